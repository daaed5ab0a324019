#include "Service.hpp"

#include "Control/ControlApi.hpp"

#include <string>
#include <string_view>

#include <gmock/gmock.h>

namespace TarnwickService {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

class Control : public testing::Test {
protected:
    /// Status and text of the answer.
    std::string answerTo(std::string_view method, std::string_view target, std::string_view body) {
        try {
            const Answer answer = api.answer({.method = method, .target = target, .body = body, .headers = {}});
            return std::to_string(answer.status) + ' ' + answer.body;
        } catch (const Refusal& refusal) {
            return std::to_string(refusal.status()) + ' ' + refusal.what();
        }
    }

    Service service{{.serverCount = 1}};
    ControlApi api{service};
};

TEST_F(Control, RefusesFaultsThatAreNotUnderstoodOrHaveNoEffect) {
    struct Row {
        const char* order;
        const char* sentence;
    };
    const Row rows[] = {
        // What no request can meet.
        {R"({"path": "statsu", "status": 503})", R"(path: no request goes to "statsu"; did you mean status?)"},
        {R"({"path": "/status", "status": 503})", "did you mean status?"},
        {R"({"path": "/vb/users/me", "status": 503})", "did you mean users/me?"},
        {R"({"path": "servers?filter=12", "status": 503})", "did you mean servers?"},
        {R"({"path": "servers/DE", "status": 503})", R"(path: no request goes to "servers/DE")"},
        {R"({"path": "servers/", "status": 503})", "did you mean servers?"},
        {R"({"path": "users/*/authtoken", "status": 503})", "did you mean users/me/authtoken?"},
        {R"({"path": "users/me/access_tokens/a/b", "status": 503})", "no request goes to"},
        {R"({"path": "statsu*", "status": 503})", "did you mean status?"},
        {R"({"path": "frobnicate", "status": 503})", "; there are status, servers, servers/*, oauth/access_token, "},
        {R"({"path": "status", "method": "POST", "status": 503})",
         R"(method: no request to "status" is a "POST"; there is GET)"},
        {R"({"path": "users*", "method": "DELET", "status": 503})", "there are POST, GET, PUT, DELETE"},
        {R"({"method": "get", "status": 503})", R"(method: no request is a "get"; there are GET, POST, PUT, DELETE)"},
        // What is no fault.
        {R"({"pth": "status", "status": 503})", R"(member: "pth" is none of path, method, )"},
        {R"({"pth": "status", "status": 503})", "did you mean path?"},
        {R"({"cut": "before_anwser"})", "did you mean before_answer?"},
        {R"({"cut": "", "status": 503})", R"(cut: "" is none of before_handshake, before_answer, inside_header, )"},
        {R"({"status": 503, "status": 200})", "status: stands twice"},
        {R"([{"status": 503}, {"status": "503"}])", "status: a whole number from 200 to 999"},
        {R"({"status": 100})", "status: a whole number from 200 to 999"},
        {R"({"status": 503.5})", "status: a whole number from 200 to 999"},
        {R"({"status": 503, "count": -1})", "count: a whole number from 1 to 1000000000"},
        {R"({"status": 503, "count": 0})", "count: a whole number from 1 to 1000000000"},
        {R"({"delay_ms": 0})", "delay_ms: a whole number from 1 to 3600000"},
        {R"({"body": 5})", "body: a text is expected"},
        {R"({"body_hex": "abc"})", "body_hex: pairs of hexadecimal digits"},
        {R"({"body_hex": "0x"})", "body_hex: pairs of hexadecimal digits"},
        {R"({"body": "x", "repeat": 1000000000})", "repeat: the body would be larger than 268435456 bytes"},
        {R"({"headers": {}})", "headers: an object of texts"},
        {R"({"headers": {"Retry-After": 5}})", "headers: an object of texts"},
        {R"({"status": 503, "takes_effect": "yes"})", "takes_effect: true or false"},
        {R"(503)", "an object is expected"},
        {R"([])", "a list without a fault"},
        {R"({"status": 503} {})", "syntax error"},
        {"", "syntax error"},
        // What has no effect.
        {R"({})", "the fault has no effect"},
        {R"({"path": "status", "count": 3})", "the fault has no effect"},
        {R"({"body": "x", "body_hex": "78"})", "body_hex: stands in place of body"},
        {R"({"status": 503, "repeat": 2})", "repeat: has no effect"},
        {R"({"delay_ms": 5, "content_type": "text/html"})", "content_type: has no effect"},
        {R"({"delay_ms": 5, "takes_effect": false})", "takes_effect: has no effect"},
        {R"({"status": 503, "cut_after_bytes": 5})", "cut_after_bytes: has no effect"},
        {R"({"cut": "inside_header", "cut_after_bytes": 5})", "cut_after_bytes: has no effect"},
        {R"({"cut": "before_answer", "status": 503})", "status: has no effect, as no answer is sent"},
        {R"({"cut": "before_answer", "headers": {"A": "b"}})", "headers: has no effect"},
        {R"({"cut": "before_handshake", "path": "status"})", "path: has no effect, as no request is waited for"},
        {R"({"cut": "before_handshake", "status": 503})", "status: has no effect, as no answer is sent"},
        {R"({"status": 503, "cut_by": "reset"})", "cut_by: has no effect, as there is no cut"},
        {R"({"cut": "before_answer", "cut_by": "closing"})", R"(cut_by: "closing" is none of reset, silence)"},
        {R"({"raw": "x", "interim": 103})", "interim: has no effect, as raw is the whole answer"},
        {R"({"chunks": "sound", "content_length": 5})", "content_length: has no effect, as chunks come without it"},
        {R"({"chunks": "malformed", "leftover": "x"})", "leftover: has no effect, as the connection does not stay"},
        {R"({"interim": 200})", "interim: a whole number from 100 to 199"},
        {R"({"status": 204, "body": "x"})", "body: has no effect, as an answer with the status 204 has no body"},
        {R"({"status": 304, "content_length": 5})", "content_length: has no effect"},
    };
    for (const auto& [order, sentence] : rows) {
        EXPECT_THAT(answerTo("POST", "/faults", order), AllOf(StartsWith("400 "), HasSubstr(sentence))) << order;
    }
    EXPECT_TRUE(service.faults().pending().empty());

    for (const auto* order :
         {R"({"delay_ms": 5})", R"({"status": 503, "takes_effect": true, "count": 1000000000})",
          R"({"path": "*", "status": 503})", R"({"path": "servers/*", "method": "GET", "status": 503})",
          R"({"path": "servers/1*", "status": 503})", R"({"path": "servers/1000", "status": 503})",
          R"({"path": "users/me/access_tokens/ab-c", "status": 503})",
          R"({"path": "us*", "method": "PUT", "status": 503})", R"({"cut": "before_answer", "takes_effect": true})",
          R"([{"cut": "after_body_bytes"}, {"body_hex": "FFfe", "repeat": 3, "content_length": 0}])",
          R"({"status": 204, "headers": {"A": "b"}})", R"({"cut": "before_handshake", "cut_by": "silence"})",
          R"({"raw": "", "takes_effect": true})", R"({"chunks": "sound", "interim": 103, "leftover": "x"})"}) {
        EXPECT_EQ(answerTo("POST", "/faults", order), "204 ") << order;
    }
}

TEST_F(Control, RefusesOtherOrdersThatAreNotUnderstood) {
    struct Row {
        const char* method;
        const char* target;
        const char* body;
        const char* answer;
    };
    const Row rows[] = {
        {"POST", "/accounts", R"({"username": "a", "pasword": "b"})",
         "400 member: \"pasword\" is none of username, password"},
        {"POST", "/accounts", R"({"username": "a"})", "400 an account needs a username and a password"},
        {"POST", "/accounts", R"({"username": "a", "password": "b", "active": 1})", "400 active: true or false"},
        {"POST", "/accounts", R"({"username": "a", "password": "b", "devices": {}})", "400 devices: a list"},
        {"POST", "/accounts", R"({"username": "a", "password": "b", "devices": [{"nam": "c"}]})",
         "400 member: \"nam\" is none"},
        {"POST", "/reset", R"({"accounts": false})", "400 no body belongs"},
        {"GET", "/state?verbose", "", "400 no query belongs"},
        {"PUT", "/faults", R"({"status": 503})", "404 GET /state, "},
        {"POST", "/fault", R"({"status": 503})", "404 GET /state, "},
    };
    for (const auto& [method, target, body, answer] : rows) {
        EXPECT_THAT(answerTo(method, target, body), StartsWith(answer)) << target << ' ' << body;
    }
    EXPECT_TRUE(service.accounts().all().empty());
    EXPECT_THAT(answerTo("GET", "/faults", ""), StartsWith("200 {\n  \"pending\": [],"));
}

}  // namespace
}  // namespace TarnwickService
