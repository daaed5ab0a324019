#pragma once

#include <Tarnwick_API/API Versions/ApiVersion1.hpp>
#include <Tarnwick_API/API Versions/ApiVersion2.hpp>
#include <Tarnwick_API/Calls/AccountCalls.hpp>
#include <Tarnwick_API/Calls/CatalogueCalls.hpp>
#include <Tarnwick_API/Calls/DeviceCalls.hpp>
#include <Tarnwick_API/Calls/HttpStatus.hpp>
#include <Tarnwick_API/Calls/StatusCallV1.hpp>
#include <Tarnwick_API/Events/Disposable.hpp>
#include <Tarnwick_API/Events/Event.hpp>
#include <Tarnwick_API/Events/PropertyObservable.hpp>
#include <Tarnwick_API/Facade/ApiNotification.hpp>
#include <Tarnwick_API/Facade/ServerFilterType.hpp>
#include <Tarnwick_API/Facade/TarnwickApi.hpp>
#include <Tarnwick_API/Platform/BuiltInMainQueue.hpp>
#include <Tarnwick_API/Platform/Bundle.hpp>
#include <Tarnwick_API/Platform/HostName.hpp>
#include <Tarnwick_API/Platform/Locale.hpp>
#include <Tarnwick_API/Platform/Logging.hpp>
#include <Tarnwick_API/Platform/MainQueue.hpp>
#include <Tarnwick_API/Platform/NotificationCenter.hpp>
#include <Tarnwick_API/Platform/Preferences.hpp>
#include <Tarnwick_API/Platform/UrlCache.hpp>
#include <Tarnwick_API/Platform/VirtualTimeMainQueue.hpp>
#include <Tarnwick_API/Storage/CustomUrlCache.hpp>
#include <Tarnwick_API/Storage/Keychain.hpp>
