// The files of the customer screen: documents and photos, what shows them, and their way to the
// office's server.
#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <initializer_list>

#include "core/formats.h"
#include "core/picture_file.h"
#include "core/places.h"
#include "core/sequences.h"
#include "core/telling.h"
#include "core/unsent_files.h"
#include "core/values.h"
#include "customers/customer_store.h"
#include "customers/document_store.h"
#include "customers/new_cust_frm.h"
#include "customers/photo_server.h"

namespace kaunter {
namespace {

constexpr const char* kDocumentFiles =
    "All Images (*.jpg *.jpeg *.bmp *.tif *.tiff *.png *.gif *.pdf);;All File (*.*)";

}  // namespace

void NewCustFrm::LoadDocuments(const std::string& id) {
  DocDG.Clear();
  ShowDocumentStrip();
  if (id.empty()) return;
  Recordset rows = main().Query(
      fmt::format("SELECT * FROM DocumentMast WHERE CustID={} ORDER BY DocNo", QuoteStr(id)));
  for (; !rows.Eof(); rows.MoveNext()) {
    DocDG.AddRow({NullToEmpty(rows.Field("DocNo")), NullToEmpty(rows.Field("DocDesc")),
                  NullToEmpty(rows.Field("DocName")), NullToEmpty(rows.Field("UserID")),
                  ShowDateTime(rows.Field("DateCreated"))});
  }
  ShowDocumentStrip();
}

void NewCustFrm::ChooseDocument() {
  if (!MayAddDocument()) return;
  const std::string file =
      desk().PickFile("Select Documents / Images File", PickStart(session()), kDocumentFiles);
  if (!file.empty()) AddDocuments({file});
}

bool NewCustFrm::MayAddDocument() {
  if (Trim(DocDesc.text()).empty()) {
    return Refuse(DocDesc,
                  {"Please input description before adding documents", "加入文件前请先输入说明"});
  }
  return !DocumentOwner().empty() || Refuse(CompCode, {"Company Code is required", "请选择公司"});
}

const std::string& NewCustFrm::DocumentOwner() const {
  return loaded_id_.empty() ? CompCode.text() : loaded_id_;
}

// Those that can be kept are; what cannot be is told, and the description stands for another try.
void NewCustFrm::AddDocuments(const std::vector<std::string>& files) {
  if (!MayAddDocument()) return;
  const std::string owner = DocumentOwner();
  bool all = true;
  for (const std::string& file : files) {
    std::error_code error;
    if (std::filesystem::path(file).extension().string().size() < 2 ||
        std::filesystem::is_directory(file, error)) {
      all = Refuse(DocDesc, "Invalid filename");
      continue;
    }
    const std::string number = NextSeries(main(), "D", owner, true);
    try {
      const std::string name = KeepDocument(session(), *this, owner, file, number);
      SendPhoto(session(), *this, owner, name);
      DocDG.AddRow(
          {number, DocDesc.text(), name, session().CurrentUserID, ServerNow(main(), true)});
    } catch (const std::runtime_error& refused) {
      all = Refuse(DocDesc, {refused.what(), refused.what()});
    }
  }
  if (all) {
    DocDesc.Clear();
    DocDesc.SetMark(false);
  }
  ShowDocumentStrip();
  ShowSending();
}

void NewCustFrm::RemoveDocuments() {
  int ticked = 0;
  for (int row = 0; row < DocDG.RowCount(); ++row) ticked += DocDG.Ticked(row) ? 1 : 0;
  if (ticked == 0) {
    Tell(MessageKind::information, "No changes on existing documents");
    return;
  }
  if (!ConfirmLoss(fmt::format("Confirm to remove {} item ?", ticked))) return;
  for (int row = DocDG.RowCount() - 1; row >= 0; --row) {
    if (DocDG.Ticked(row)) DocDG.RemoveRow(row);
  }
  ShowDocumentStrip();
}

// The number tells whose it was when it was added: a new customer's lie with his company.
std::string NewCustFrm::DocumentFolder(int row) const {
  const std::string& number = DocDG.Cell(row, 0);
  return number.substr(0, number.find('#'));
}

std::string NewCustFrm::DocumentPath(int row) const {
  const std::string& file = DocDG.Cell(row, 2);
  return IsPlainFileName(file) ? KeptPath(session(), DocumentFolder(row), file) : std::string();
}

// What lies on this PC is shown; what does not is fetched when it is opened.
void NewCustFrm::ShowDocumentStrip() {
  std::vector<PictureStrip::Item> items;
  for (int row = 0; row < DocDG.RowCount(); ++row) {
    items.push_back({DocumentPath(row), DocDG.Cell(row, 1)});
  }
  DocStrip.SetVisible(!items.empty());
  DocStrip.SetItems(std::move(items));
  ShowDocument(std::max(DocDG.current_row(), 0));
}

void NewCustFrm::ShowDocument(int row) {
  DocPreview.SetPath(row < 0 || row >= DocDG.RowCount() ? std::string() : DocumentPath(row));
}

bool NewCustFrm::MayOpenFile(const std::string& file) {
  switch (OpeningOf(file)) {
    case Opening::shown:
      return true;
    case Opening::refused:
      return Refuse(
          {fmt::format("{} is a program, or may start one. It is not opened from here.", file),
           fmt::format("{} 是程序或可能启动程序，不能在此打开。", file)});
    case Opening::asked:
      break;
  }
  return ConfirmLoss(
      {fmt::format(
           "What opens {} is not known here, and it may start a program on this PC. Open it "
           "only if you know who made it. Open it ?",
           file),
       fmt::format("不清楚 {} 会由什么程序打开，它可能在本机启动程序。确知来源才可打开。要打开吗？",
                   file)});
}

void NewCustFrm::OpenDocument() {
  const int row = DocDG.current_row();
  if (row < 0) return;
  const std::string file = DocDG.Cell(row, 2);
  const std::string path = DocumentPath(row);
  if (path.empty()) {
    Refuse({fmt::format("{} is no name of a document.", file),
            fmt::format("{} 不是文件的名称。", file)});
    return;
  }
  if (!MayOpenFile(file) || !FetchPhoto(session(), *this, DocumentFolder(row), file)) return;
  if (const auto refusal = WhyNotOpened(path)) {
    desk().Message(MessageKind::critical, session().In({"Open Documents", "打开文件"}),
                   fmt::format("{}\n{}", session().In(*refusal), path));
    return;
  }
  ShowDocumentStrip();
  desk().Open(path);
}

std::string NewCustFrm::PhotoPath(const TextBox& box) {
  return box.empty() || loaded_id_.empty()
             ? std::string()
             : shown_photos_.Path(session(), *this, loaded_id_, box.text());
}

void NewCustFrm::ShowPhoto(const std::string& id) {
  Photo.SetPath(id.empty() ? std::string() : PhotoPath(Pic1));
  std::vector<PictureStrip::Item> items;
  for (const TextBox* box : {&Pic1, &Pic2, &Pic3, &Pic4, &Pic5, &Pic6}) {
    if (const std::string path = PhotoPath(*box); !path.empty()) {
      items.push_back({path, session().In(box->caption())});
    }
  }
  PhotoPreview.SetPath(items.empty() ? std::string() : items.front().path);
  PhotoStrip.SetItems(std::move(items));
}

bool NewCustFrm::MayKeepPhoto(TextBox& box) {
  return !loaded_id_.empty() ||
         Refuse(box, {"Please save Customer Profile first before upload photo",
                      "上载照片前请先储存顾客资料"});
}

void NewCustFrm::ChoosePhoto(TextBox& box, int number) {
  if (!MayKeepPhoto(box)) return;
  const std::string file = ChoosePicture(session(), box);
  if (!file.empty()) KeepPhoto(box, number, file);
}

void NewCustFrm::KeepPhoto(TextBox& box, int number, const std::string& file) {
  const std::string name =
      KeepFile(session(), loaded_id_, file, NewPhotoStem(session(), fmt::format("pic{}", number)));
  ExecuteOnRow(main(),
               fmt::format("UPDATE CustMast SET Pic{}={} WHERE CustID={}", number, QuoteStr(name),
                           QuoteStr(loaded_id_)),
               loaded_id_);
  // It is stored: nothing is lost with it when the screen is left.
  const bool typed = record_.Changed(&CustID);
  box.SetText(name);
  if (!typed) record_.Remember();
  SendPhoto(session(), *this, loaded_id_, name);
  ShowPhoto(loaded_id_);
  ShowGlance();
  ShowSending();
}

void NewCustFrm::Tick() {
  if (shown_photos_.Tick(session(), *this)) {
    ShowPhoto(loaded_id_);
    ShowGlance();
  }
  TellUnsent(session(), *this);
  ShowSending();
}

void NewCustFrm::ShowSending() {
  const FileStore* store = OpenStore(session());
  const FileStore::Sending sending = store == nullptr ? FileStore::Sending() : store->sending();
  const bool under_way = store != nullptr && store->IsSending();
  for (Control* control : std::initializer_list<Control*>{&SendBar, &StopSendCmd, &SendAgainCmd}) {
    const bool wanted =
        sending.waiting > 0 && (control == &SendBar || (control == &StopSendCmd) == under_way);
    if (control->visible() != wanted) control->SetVisible(wanted);
  }
  if (sending.waiting == 0) return;
  constexpr double kMegabyte = 1024.0 * 1024;
  const double done = static_cast<double>(sending.done), total = static_cast<double>(sending.total);
  const std::string text = under_way
                               ? fmt::format("{}   {:.1f} / {:.1f} MB   ({})", sending.name,
                                             done / kMegabyte, total / kMegabyte, sending.waiting)
                               : session().In({fmt::format("{} not sent", sending.waiting),
                                               fmt::format("{} 个未传送", sending.waiting)});
  SendBar.Set({{{}, total > 0 ? done / total : 0, Bar::Part::Tone::good},
               {{}, total > 0 ? 1 - done / total : 1, Bar::Part::Tone::quiet}},
              text);
}

}  // namespace kaunter
