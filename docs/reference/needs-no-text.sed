# Doxygen's warnings about what says enough by its name. Whatever these lines leave fails the target tarnwick_reference.
# Constructors, destructors and operators:
/: Member ([A-Za-z0-9]+)\(.*\(function\) of (class|struct) ([A-Za-z0-9_]+::)*\1(<.*>)? is not documented/d
/: Member (~|operator)/d
# Data members, and the kinds of a class that is one of several kinds:
/\(variable\) of (class|struct)/d
/: Member (Kind|Value|Case) \(enumeration\)/d
# What a call's answer decodes to, which `ApiCallV1` explains, and the readers of records:
/: Member (Answer|SingleAnswer) \(typedef\)/d
/: Member decode\(const Platform::JsonObject/d
# What a fake operation was called with:
/: Compound .*::FakeBackend::[A-Za-z]+Arguments is not documented/d
# Properties:
/: Member [a-z][A-Za-z0-9]*\(\) const( noexcept)?( =0)? \(function\)/d
/: Member set[A-Z][A-Za-z]*\([^,()]*\)( noexcept)?( ?=0)? \(function\)/d
# Overrides, which say what the overridden says:
/ override( noexcept)? \(function\)/d
