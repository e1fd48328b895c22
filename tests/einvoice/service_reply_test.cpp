// What is read out of a reply, whatever the service sends.
#include "einvoice/service_reply.h"

#include <gtest/gtest.h>

#include <string>

namespace kaunter {
namespace {

const std::string kUuid = "0123456789ABCDEFGHJKMNPQRS";

TEST(ServiceReply, TheUuidIsDugOutOfTheText) {
  const struct {
    std::string reply;
    std::string uuid;
  } cases[] = {
      {R"({"uuid":")" + kUuid + R"(","x":1})", kUuid},
      {R"({"uuid": ")" + kUuid + R"("})", kUuid},
      {R"({"data":[{,"uuid":")" + kUuid, kUuid},  // nothing else of it need be JSON
      // The form without a blank is looked for first, wherever it stands.
      {R"("uuid": "ZZ" "uuid":")" + kUuid + '"', kUuid},
      {R"({"uuid":")" + kUuid + "LONGER\"}", kUuid},
      {R"({"uuid":"SHORT","a":"b c d e f g h i j"})", ""},
      {R"({"uuid":"0123456789 BCDEFGHJKMNPQRS"})", ""},
      {R"({"uuid":"SHORT)", "SHORT"},
      {R"({"uuid":")", ""},
      {R"({"uuid":"甲甲甲甲甲甲甲甲甲甲甲甲甲甲甲甲甲甲甲甲甲甲甲甲甲甲"})",
       "甲甲甲甲甲甲甲甲甲甲甲甲甲甲甲甲甲甲甲甲甲甲甲甲甲甲"},
      {R"({"UUID":")" + kUuid + R"("})", ""},
      {R"({"uuid" :")" + kUuid + R"("})", ""},
      {R"({"uuid":null})", ""},
      {"", ""},
  };
  for (const auto& one : cases) EXPECT_EQ(UuidOf(one.reply), one.uuid) << one.reply;
}

TEST(ServiceReply, OnlyAClearNoIsARefusal) {
  const struct {
    const char* reply;
    bool error;
    bool refusal;
  } cases[] = {
      {R"({"message":"no"})", true, true},
      {R"({ "message":"no"})", false, true},
      {R"(xxmessage)", true, true},
      {R"({"error":"invalid_client"})", false, true},
      {R"({"errors":[1]})", false, true},
      {R"({"error":"late","uuid":"9"})", false, false},
      {R"({"error":"cut )", false, false},
      {R"({"status":"taken"})", false, false},
      {"<html>500</html>", false, false},
      {"[]", false, false},
      {"{\"", false, false},
      {"", false, false},
  };
  for (const auto& one : cases) {
    EXPECT_EQ(IsErrorReply(one.reply), one.error) << one.reply;
    EXPECT_EQ(IsRefusal(one.reply), one.refusal) << one.reply;
  }
}

TEST(ServiceReply, TheStatusIsThatOfTheFirstDocument) {
  const StatusReply one = ReadStatusReply(
      R"({"data":[{"uuid":"A","status":"Valid","url":"https:\/\/x"},{"uuid":"B"}]})");
  EXPECT_FALSE(one.error);
  EXPECT_EQ(one.uuid + one.status + one.url, "AValidhttps://x");
  EXPECT_TRUE(ReadStatusReply(R"({"message":"no","data":[{"uuid":"A"}]})").error);
  for (const char* reply : {"", "[]", R"({"data":{"uuid":"A"}})", R"({"data":[]})", "<html>"}) {
    EXPECT_EQ(ReadStatusReply(reply).uuid, "") << reply;
  }
}

}  // namespace
}  // namespace kaunter
