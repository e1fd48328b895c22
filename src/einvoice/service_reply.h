// What the service answers. A uuid is dug out of the text, for it must be found in a reply that no
// reader of JSON would take; a status comes out of the parsed reply.
#pragma once

#include <string>
#include <string_view>

namespace kaunter {

// The 26 characters behind the first `"uuid":"`, or else behind the first `"uuid": "`; "" when
// there is none, or when a blank or a quote is among them. A reply that ends sooner gives fewer.
std::string UuidOf(std::string_view reply);

// {"message ...: the service takes what was sent for wrong.
bool IsErrorReply(std::string_view reply);

// A clear no: an error reply, or an object with an error and without a uuid. Anything else without
// a uuid, an empty reply or a page of a broken server, leaves open whether it took the document.
bool IsRefusal(std::string_view reply);

// What a service that answers gives: no page of a broken server, nothing cut.
bool IsWholeObject(std::string_view reply);

// The first document of a reply to a question for the status. All is "" in an error reply.
struct StatusReply {
  bool error = false;
  std::string uuid;
  std::string status;  // "Valid", "Invalid" or another word of the service
  std::string url;     // of the validated document
};
StatusReply ReadStatusReply(std::string_view reply);

}  // namespace kaunter
