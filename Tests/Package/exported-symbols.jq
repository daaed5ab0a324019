# From what clang says of the public headers (-ast-dump=json), a line per entity: "has" and the mangled name of a function whose
# code must come from the library; "may" and one whose code may; "type" and the mangling of a class; "template" and that of a
# template, with which those of its instances begin.
def mangling($names): ($names | map((length | tostring) + .) | join(""));
def is_function: .kind | IN("FunctionDecl", "CXXMethodDecl", "CXXConstructorDecl", "CXXDestructorDecl", "CXXConversionDecl");
def has_code:
    .isImplicit or .pure or .explicitlyDefaulted or .explicitlyDeleted or .constexpr or
    any(.inner[]?; .kind == "CompoundStmt" or .kind == "CXXTryStmt");

def entities($names):
    if is_function then
        "\(if has_code then "may" else "has" end) \(.mangledName // empty)"
    elif .kind == "FunctionTemplateDecl" or .kind == "ClassTemplateDecl" then
        "template \(mangling($names + [.name]))I"
    elif .kind == "NamespaceDecl" then
        .name as $name | .inner[]? | entities($names + [$name])
    elif .kind == "CXXRecordDecl" and .completeDefinition and .name then
        .name as $name
        | "type N\(mangling($names + [$name]))E", (.inner[]? | entities($names + [$name]))
    elif .kind == "FriendDecl" then
        .inner[]? | select(is_function) | entities($names[:-1])
    else
        empty
    end;

select(.kind == "NamespaceDecl") | entities([])
