#include "einvoice/json_script.h"

#include <gmock/gmock.h>

#include "tests/screen/silent_desk.h"

namespace kaunter {
namespace {

struct ScriptDesk : SilentDesk {
  std::string Input(std::string_view title, std::string_view text,
                    std::string_view preset) override {
    return std::string(title) + "/" + std::string(text) + "/" + std::string(preset);
  }
};

TEST(JsonScript, Table) {
  const struct {
    std::string script, result;
    std::vector<std::string> told = {};
  } rows[] = {
      {R"(["a",1.50,null,true,["b",[2]],{}])", "a1.5nulltrueb2"},
      {R"([{"SET":{"name":"n","value":["x",3]}},{"get":{"name":"n"}},{"get":{"name":"m"}}])", "x3"},
      {R"([{"alert":{"message":"m","title":"t"}}])", "", {"t: m"}},
      {R"([{"input":{"prompt":"p","title":"t","default":"d"}}])", "t/p/d"},
      {R"([{"switch":{"case":"b","items":{"a":1,"b":2},"default":3}}])", "2"},
      {R"([{"switch":{"case":"c","items":{"a":1,"b":2},"default":3}}])", "3"},
      {R"([{"if":{"value1":"A","value2":"a","type":"EQ","true":1,"false":2}}])", "1"},
      {R"([{"if":{"value1":"b","value2":"a","type":"lte","true":1,"false":2}}])", "2"},
      {R"([{"if":{"value1":"b","value2":"a","type":"gt","true":1}},{"none":1}])", "1"},
      {R"([1,{"return":{"a":2,"b":[3,4]}},5])", "12,34"},
      {R"(["<%a(b)%>",["<%twice(a,b)%>","<%none","<%x(1)% >"]])",
       "<%a(b)%>TWICE:a,b<%none<%x(1)% >"},
      {R"({"a":1})", "", {"Parser Error: Invalid JSON"}},
      {R"([1,tx])", "", {"Parser Error: Invalid Boolean at position 4 : tx]\r\n"}},
      {std::string(40, '[') + "7" + std::string(40, ']'), "7"},
      {std::string(41, '[') + "7" + std::string(41, ']'), "ERROR: Nesting level exceeded."},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.script);
    ScriptDesk desk;
    cJSONScript script(desk);
    script.onCustomCommand = [](std::string_view name, std::string_view args) {
      return std::string(name) + ":" + std::string(args);
    };
    EXPECT_EQ(script.Eval(row.script), row.result);
    EXPECT_EQ(desk.messages, row.told);
  }
}

}  // namespace
}  // namespace kaunter
