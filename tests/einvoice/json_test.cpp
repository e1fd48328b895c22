// The lax parser: what it makes of odd inputs, worked out by hand from its rules.
#include "einvoice/json.h"

#include <gtest/gtest.h>

#include "einvoice/string_builder.h"

namespace kaunter {
namespace {

// The tree in a notation of its own: objects in braces, lists in brackets, texts in angles, numbers
// bare.
std::string Shape(const JsonValue& value) {
  using Kind = JsonValue::Kind;
  switch (value.kind()) {
    case Kind::nothing:
      return "nothing";
    case Kind::text:
      return "<" + value.ToText() + ">";
    case Kind::null:
      return "null";
    case Kind::boolean:
    case Kind::number:
      return value.ToText();
    default:
      break;
  }
  const bool object = value.kind() == Kind::object;
  std::string shape(1, object ? '{' : '[');
  for (const auto& [key, member] : value.Members()) {
    if (shape.size() > 1) shape += ' ';
    shape += object ? key + '=' + Shape(member) : Shape(member);
  }
  return shape + (object ? '}' : ']');
}

TEST(Json, ParsesOddInputsAsItsRulesSay) {
  const struct {
    std::string text, shape, errors;
  } rows[] = {
      // Plain.
      {R"({"a":"x","b":[1,-2.50,true,false,null],"c":{}})",
       "{a=<x> b=[1 -2.5 true false null] c={}}", ""},
      {"[]", "[]", ""},
      {" \t\r\n( [ ) 1 ( ] ", "[1]", ""},
      // Not begun.
      {"", "nothing", "Invalid JSON"},
      {"12", "nothing", "Invalid JSON"},
      {"\"a\"", "nothing", "Invalid JSON"},
      {"<html>", "nothing", "Invalid JSON"},
      {"/ {}", "nothing", "Invalid JSON"},
      // What follows the end is not looked at.
      {"{}}]x", "{}", ""},
      // Comments.
      {"// note\n{a:1}", "{a=1}", ""},
      {"// note /* still\r[1 // one\n,2]", "[1 2]", ""},
      {"/* long\n// same */{a:/**/1}", "{a=1}", ""},
      {"/* never ended {}", "nothing", "Invalid JSON"},
      {"[1 /* / * */ , /*/ 3 */ 2]", "[1 2]", ""},
      // Keys.
      {"{a:1}", "{a=1}", ""},
      {"{'a b':1,\"c\td\":2}", "{ab=1 cd=2}", ""},
      {"{\"a:b\":1}", "{a:b=1}", ""},
      {"{\"a\" /* here */ :1}", "{a=1}", ""},
      {"{\"a\" b:1}", "{}", "Invalid Key at position 6 : a13: \"\" is no number: b:1}"},
      {"{a'b':1}", "{ab=1}", ""},
      {"{:1}", "{=1}", ""},
      {"{A:1,a:2}", "{A=1 a=2}", ""},
      // A second key of the same name ends the object.
      {"{a:1,a:2,b:3}", "{a=1}", "457: the key \"a\" is there twice: ,b:3}"},
      // The list goes on where the object stopped, and finds no value there.
      {"[{a:1,a:2},3]", "[{a=1}]",
       "457: the key \"a\" is there twice: },3]13: \"\" is no number: },3]"},
      // Cut.
      {"{", "{}", "Missing '}': {"},
      {"[1,2", "[1]", "Missing ']': [1,2"},
      {"[1,2 ", "[1 2]", "Missing ']': [1,2 "},
      {"{\"a\":\"x", "{a=<x>}", "Missing '}': {\"a\":\"x"},
      {"{\"a\":1", "{}", "Missing '}': {\"a\":1"},
      {"{\"a\":[{\"uuid\":\"ABCDEFGHIJKLMNOPQRST", "{a=[{uuid=<ABCDEFGHIJKLMNOPQRST>}]}",
       "Missing '}': ABCDEFGHIJKLMNOPQRSTMissing ']': ABCDEFGHIJKLMNOPQRSTMissing '}': "
       "ABCDEFGHIJKLMNOPQRST"},
      {"{abc", "{}", "Missing '}': {abc"},
      // Texts.
      {R"(["\"\\\/\'\b\f\n\r\t"])", "[<\"\\/'\b\f\n\r\t>]", ""},
      {R"(["\q\"x"])", "[<q\"x>]", ""},
      {R"(['it"s',"it's"])", "[<it\"s> <it's>]", ""},
      {R"(["\u0041\u4e2d"])", "[<A中>]", ""},
      {R"(["\ud83d\ude00|\ud83dx|\ude00"])", "[<😀|\xEF\xBF\xBDx|\xEF\xBF\xBD>]", ""},
      {R"(["\u00zz",1])", "[]", "13: \"00zz\" is no number: 00zz\",1]"},
      {"[\"\\u41", "[<A>]", "Missing ']': [\"\\u41"},
      {"[\"a\\", "[<a>]", "Missing ']': [\"a\\"},
      {"[\"line\nend\"]", "[<line\nend>]", ""},
      // Words.
      {"[true1]", "[true 1]", ""},
      {"[truth]", "[]", "Invalid Boolean at position 2 : truth]\r\n"},
      {"{a:fals}", "{}", "Invalid Boolean at position 4 : fals}\r\nMissing '}': {a:fals}"},
      {"[nil]", "[]", "Invalid null value at position 2 : nil]\r\n"},
      {"[True]", "[]", "13: \"\" is no number: True]"},
      // Numbers, exact.
      {"[+1,1.50,.5,5.,-0,1e3,1.25E-2,-0.000]", "[1 1.5 0.5 5 0 1000 0.0125 0]", ""},
      {"[12345678901234567890.123456789]", "[12345678901234567890.123456789]", ""},
      {"[0.1,0.00000000000000000000000000005,1e-99999999999]", "[0.1 0 0]", ""},
      {"[9.99999999999999999999999999995]", "[10]", ""},
      {"[0.00000000000000000000000000015]", "[0.0000000000000000000000000002]", ""},
      {"[1e29]", "[]", "6: 1e29 is too large: ]"},
      {"[1-2]", "[]", "13: \"1-2\" is no number: ]"},
      {"[1.2.3]", "[]", "13: \"1.2.3\" is no number: ]"},
      {"[1e]", "[]", "13: \"1e\" is no number: ]"},
      // Missing commas do not matter; a comma too many does.
      {"[1 2\"a\"{}]", "[1 2 <a> {}]", ""},
      {"[1,]", "[1]", "13: \"\" is no number: ]"},
      {"[,1]", "[1]", ""},
      {"{a:1 b:2}", "{a=1 b=2}", ""},
      // 20 characters are shown, whatever their bytes.
      {"[1 中文中文中文中文中文中文", "[1]", "13: \"\" is no number: 中文中文中文中文中文中文"},
      {"[\"\xFF\"]", "[<\xEF\xBF\xBD>]", ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    EXPECT_EQ(Shape(Parse(row.text)), row.shape);
    EXPECT_EQ(ParserErrors(), row.errors);
  }
}

TEST(Json, DeepAndLongTextsEndInTime) {
  const std::string deep(100'000, '[');
  EXPECT_EQ(Parse(deep).Item(1).Item(1).Count(), 1);
  EXPECT_LE(ParserErrors().size(), 70'000U);
  std::string many = "{";
  for (int i = 0; i < 30'000; ++i) many += "k" + std::to_string(i) + ":\"\\u4e2d\",";
  EXPECT_EQ(Parse(many + "}").Count(), 30'000);
}

TEST(Json, ItemsThatAreNotThereAreEmpty) {
  const JsonValue reply = Parse(R"({"data":[{"uuid":"U1","url":null}],"message":"ok"})");
  EXPECT_EQ(reply.Item("data").Item(1).Item("uuid").ToText(), "U1");
  for (const JsonValue& none :
       {reply.Item("Data"), reply.Item(1), reply.Item("data").Item(0), reply.Item("data").Item(2),
        reply.Item("data").Item("uuid"), reply.Item("message").Item("x"), JsonValue().Item("a"),
        reply.Item("data").Item(1).Item("url"), reply.Item("data")}) {
    EXPECT_EQ(none.ToText(), "");
  }
}

TEST(Json, WritesQuotesAndAmountsAsTheServiceIsUsedTo) {
  EXPECT_EQ(JsonQuote("a\"b\\c"), "\"a\"b\\c\"");
  const struct {
    Value value;
    std::string text;
  } rows[] = {{Money::FromText("1000"), "1000"},
              {Money::FromText("1000.50"), "1000.5"},
              {Money::FromText("1000.55"), "1000.55"},
              {Money::FromText("0.005"), "0.01"},
              {Money::FromText("-12.30"), "-12.3"},
              {Value(), "0.00"},
              {Value("1,234.00"), "1234"},
              {Value(0), "0"},
              {Value(1.005), "1.01"}};
  for (const auto& row : rows) EXPECT_EQ(JsonMoney(row.value), row.text);
  EXPECT_THROW(JsonMoney(Value("ten")), std::invalid_argument);
}

TEST(StringBuilder, IsAStringThatGrowsByWholeChunks) {
  cStringBuilder text;
  text.SetChunkSize(8);
  EXPECT_EQ(text.Capacity(), 0U);
  text.Append("abc");
  EXPECT_EQ(text.Capacity(), 8U);
  text.AppendNL("defg");
  text.Insert(0, text.View().substr(1, 2));
  text.Remove(2, 1);
  EXPECT_EQ(text.toString(), "bcbcdefg\r\n");
  EXPECT_EQ(text.Capacity() % 8, 0U);
  EXPECT_EQ(text.Find("c", 2), 3U);
  EXPECT_EQ(text.Find("x"), std::nullopt);
  text.SetTheString("z");
  text.HeapMinimize();
  EXPECT_EQ(text.Capacity(), 8U);
  EXPECT_THROW(text.Insert(2, "y"), std::out_of_range);
  EXPECT_THROW(text.Remove(0, 2), std::out_of_range);
  EXPECT_THROW(text.Find("z", 2), std::out_of_range);
}

}  // namespace
}  // namespace kaunter
