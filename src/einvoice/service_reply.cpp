#include "einvoice/service_reply.h"

#include "einvoice/json.h"
#include "platform/sql/text.h"

namespace kaunter {

std::string UuidOf(std::string_view reply) {
  constexpr std::size_t kUuidLength = 26;
  std::string_view marker = "\"uuid\":\"";
  std::size_t at = reply.find(marker);
  if (at == std::string_view::npos) {
    marker = "\"uuid\": \"";
    at = reply.find(marker);
  }
  if (at == std::string_view::npos) return {};
  reply.remove_prefix(at + marker.size());
  std::size_t end = 0;
  for (std::size_t taken = 0; taken < kUuidLength && end < reply.size(); ++taken) {
    sql::NextChar(reply, &end);
  }
  const std::string uuid(reply.substr(0, end));
  return uuid.find_first_of(" \"") == std::string::npos ? uuid : std::string();
}

bool IsErrorReply(std::string_view reply) {
  constexpr std::string_view kMessage = "message";
  return reply.size() > 2 && reply.substr(2, kMessage.size()) == kMessage;
}

bool IsRefusal(std::string_view reply) {
  if (IsErrorReply(reply)) return true;
  if (reply.find("\"uuid\"") != std::string_view::npos) return false;
  if (!IsWholeObject(reply)) return false;
  const JsonValue parsed = Parse(reply);
  for (const char* key : {"message", "error", "errors"}) {
    if (!parsed.Item(key).IsNothing()) return true;
  }
  return false;
}

bool IsWholeObject(std::string_view reply) {
  return Parse(reply).kind() == JsonValue::Kind::object && ParserErrors().empty();
}

StatusReply ReadStatusReply(std::string_view reply) {
  if (IsErrorReply(reply)) return {.error = true, .uuid = {}, .status = {}, .url = {}};
  const JsonValue first = Parse(reply).Item("data").Item(1);
  return {.error = false,
          .uuid = first.Item("uuid").ToText(),
          .status = first.Item("status").ToText(),
          .url = first.Item("url").ToText()};
}

}  // namespace kaunter
