// Caption: an English and a Chinese text side by side; which one shows is decided at the moment of
// showing.
#pragma once

#include <string>

namespace kaunter {

struct Caption {
  std::string english;
  std::string chinese;  // empty: English whatever the language

  Caption() = default;
  Caption(const char* english_text) : english(english_text) {}
  Caption(std::string english_text) : english(std::move(english_text)) {}
  Caption(std::string english_text, std::string chinese_text)
      : english(std::move(english_text)), chinese(std::move(chinese_text)) {}

  const std::string& In(bool chinese_flag) const {
    return chinese_flag && !chinese.empty() ? chinese : english;
  }
};

}  // namespace kaunter
