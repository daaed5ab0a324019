#include "Documentation/ClientManual.hpp"

#include "ClientVersion.hpp"

namespace TarnwickClient {

namespace {

constexpr const char* description =
    R"(tarnwick signs in and out at the VPN service, reads and changes the account, and lists devices, countries and
servers. It sets up no tunnel.

A sign-in lasts over several runs: the access token is kept in the keychain, which is the desktop's keyring, or a
private file where there is none. The password is kept nowhere and never taken from the command line, where other users
can read it.

Results go to standard output, everything else to standard error. On a terminal tables are made to fit; in a pipe they
are whole. A failed transfer is tried again several times before a command gives up.
)";

constexpr const char* notes = R"(JSON:
With --json a command prints exactly one document to standard output, also when it fails; the words about a failure
stand on standard error all the same. The shapes are given with the commands, in braces for an object and in brackets
for an array. Their names stay the same between versions, and new ones may come.

A value that the service did not give is null. A time is written as 2026-01-31T23:59:59Z. The distance is in the
service's own unit. The type of a device is one of mac, ios, windows, android and other; that of a place one of general,
downloading, streaming and privateIp.

A failure is the document {error: {kind, message, exitStatus, serviceText}}. The kind is a word that stays the same, the
message is for people, and serviceText, the service's own words, is there only when it had some. The kinds:

  usage  the command line or a setting is wrong
  notSignedIn, loginRequired, unauthorized  there is no session, or name or password was refused
  notReachable  no transfer has come through
  timedOut, cancelled, noData, noOauthToken, decodingError  no answer in time, or none that can be used
  badRequest, forbidden, notFound, genericError, unknownError  the service refused the request
  invalidConsumerKey, invalidConsumerRights, consumerKeyMissing  the service does not accept the application
  usernameAlreadyExists, signupFailed, qvUserMigrationRequired  the account can't be had, or has to be imported
  keychainLocked, keychainUnavailable, noItem, tokenNotKept, tokenNotWiped  the keychain did not do its part
  local  something else on this computer failed

A result that could not be written is the one failure without a document.

Environment:
Each setting has a variable, which is given with its option. A flag's variable takes true or false. Besides:

  TARNWICK_CONFIG  the configuration file, in place of the usual one; it must be there
  TARNWICK_USERNAME  the user name for login and create-user
  TARNWICK_PASSWORD  the password for login and create-user
  TARNWICK_NEW_PASSWORD  the password that update-user sets
  XDG_CONFIG_HOME, XDG_STATE_HOME, XDG_DATA_HOME  where the files below are, in place of ~/.config, ~/.local/state and ~/.local/share
  SIMDJSON_FORCE_IMPLEMENTATION  set to haswell on a machine whose system does not save AVX-512 registers

Files:
  ~/.config/tarnwick/config.toml  the settings, in TOML; better readable to you alone, as it holds the consumer secret
  ~/.local/state/tarnwick/installation-id  the UUID by which the service knows this installation

What a service needs to be told, as a configuration file:

  host-live = "api.example.com"
  consumer-key = "tarnwick-demo-key"
  consumer-secret = "tarnwick-demo-secret"
  partner-id = 7
  filter-general-countries-all = 12
  filter-general-servers-per-country = 14

See also:
  tarnwick-service(1)
)";

}  // namespace

CommandLine::Manual clientManual() {
    return {.version = clientVersion, .description = description, .notes = notes};
}

}  // namespace TarnwickClient
