#include "reports/paper_words.h"

#include <fmt/format.h>

namespace kaunter {

std::optional<PaperLanguage> PaperLanguageNamed(std::string_view name) {
  if (name == "english") return PaperLanguage::english;
  if (name == "chinese") return PaperLanguage::chinese;
  if (name == "malay") return PaperLanguage::malay;
  return std::nullopt;
}

std::string PaperWords::In(const char* english, const char* chinese, const char* malay) const {
  switch (language_) {
    case PaperLanguage::chinese:
      return chinese;
    case PaperLanguage::malay:
      return malay;
    case PaperLanguage::english:
      break;
  }
  return english;
}

std::string PaperWords::Printed(const std::string& when, const std::string& by) const {
  const std::string printed = In("Printed ", "打印于 ", "Dicetak ") + when;
  return by.empty() ? printed : printed + In(" by ", "，", " oleh ") + by;
}

std::string PaperWords::PageOf(std::size_t page, std::size_t of) const {
  return fmt::format(
      fmt::runtime(In("Page {} of {}", "第 {} 页，共 {} 页", "Muka surat {} daripada {}")), page,
      of);
}

std::string PaperWords::NoRows() const {
  return In("No rows for this selection.", "没有符合条件的记录。", "Tiada rekod bagi pilihan ini.");
}

std::string PaperWords::Continued() const { return In(" (continued)", "（续）", " (sambungan)"); }

std::string PaperWords::Others() const { return In("Others", "其他", "Lain-lain"); }

}  // namespace kaunter
