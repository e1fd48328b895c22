#include "einvoice/tin_lookup.h"

#include <fmt/format.h>

#include "core/log.h"
#include "core/session.h"
#include "core/settings.h"
#include "core/telling.h"
#include "core/values.h"
#include "einvoice/json.h"
#include "einvoice/service_access.h"
#include "einvoice/web_address.h"
#include "screen/screen.h"

namespace kaunter {
namespace {

constexpr int kMostFailures = 4;

const Caption kNoToken{"Fail to get Token", "无法取得令牌"};

}  // namespace

TinLookup::TinLookup(Session& session, Screen& screen)
    : session_(session), screen_(screen), http_(session, screen.desk()) {}

std::string TinLookup::Get(const std::string& comp_code, Control& id_type, Control& id_no) {
  if (failures_ >= kMostFailures) {
    Tell(session_, screen_, MessageKind::critical,
         {"Fail to get TIN, Please try later", "无法取得税务编号，请稍后再试"});
    return {};
  }
  if (Trim(id_type.Text()).empty()) {
    Refuse(session_, id_type, {"ID Type required", "请选择证件种类"});
    return {};
  }
  if (Trim(id_no.Text()).empty()) {
    Refuse(session_, id_no, {"ID No required", "请输入证件号码"});
    return {};
  }
  try {
    return Ask(comp_code, Trim(id_type.Text()), Trim(id_no.Text()));
  } catch (const HttpFailure& failure) {
    TellFailed({"Fail to get TIN", "无法取得税务编号"}, failure);
  }
  return {};
}

// Giving up is no failure of the service, and the person knows of it.
void TinLookup::TellFailed(const Caption& words, const HttpFailure& failure) {
  LogRollback(session_, words.english, failure);
  if (failure.given_up()) return;
  ++failures_;
  Tell(session_, screen_, MessageKind::critical,
       {fmt::format("{}\n{}", words.english, failure.what()),
        fmt::format("{}\n{}", words.chinese, failure.what())});
}

bool TinLookup::HaveToken(const std::string& comp_code) {
  if (!token_.empty() && SameText(token_company_, comp_code)) return true;
  const std::string url = ReadSetting(session_.Main(), "GetTokenURL");
  if (url.empty()) {
    Tell(session_, screen_, MessageKind::critical, {"Missing get Token URL", "没有取得令牌的网址"});
    return false;
  }
  token_company_ = comp_code;
  try {
    token_ =
        RequestToken(http_, secrets_, url, TinClient(session_.Main(), comp_code), "InvoicingAPI");
  } catch (const HttpFailure& failure) {
    TellFailed(kNoToken, failure);
    return false;
  }
  if (!token_.empty()) return true;
  ++failures_;
  Tell(session_, screen_, MessageKind::critical, kNoToken);
  return false;
}

std::string TinLookup::Ask(const std::string& comp_code, const std::string& id_type,
                           const std::string& id_no) {
  if (!HaveToken(comp_code)) return {};
  const std::string url = ReadSetting(session_.Main(), "GetTINURL");
  if (url.empty()) {
    Tell(session_, screen_, MessageKind::critical, {"Missing get TIN URL", "没有查税务编号的网址"});
    return {};
  }
  const std::string reply = http_.HttpSend(
      "GET", fmt::format("{}?idType={}&idValue={}", url, EncodedForm(id_type), EncodedForm(id_no)),
      {}, token_, "form");
  const std::string tin = Parse(reply).Item("tin").ToText();
  if (!tin.empty()) return tin;
  ++failures_;
  // The token may be one that has run out: the next try begins with another.
  token_.clear();
  WriteLog(session_, LogLine(session_, fmt::format("Get TIN - {} {} - {}", id_type, id_no,
                                                   secrets_.Hide(reply))));
  Tell(session_, screen_, MessageKind::critical,
       {fmt::format("The service gives no TIN for {} {}. Please check both.", id_type, id_no),
        fmt::format("没有 {} {} 的税务编号，请检查。", id_type, id_no)});
  return {};
}

}  // namespace kaunter
