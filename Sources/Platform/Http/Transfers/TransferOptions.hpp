#pragma once

#include <Platform/Http/Transfers/Exchange.hpp>
#include <Platform/Http/Transfers/HeaderList.hpp>
#include <Platform/Http/Transfers/OptionSetter.hpp>

namespace Tarnwick_API::Platform {

/// Sets what all exchanges have.
void setCommonOptions(OptionSetter& set);

/// Sets up an easy handle that has these options to send `exchange`, or its current hop. `headers` is filled and, like
/// the exchange, must stay alive and unchanged while the transfer runs.
void setTransferOptions(OptionSetter& set, const Exchange& exchange, HeaderList& headers);

}  // namespace Tarnwick_API::Platform
