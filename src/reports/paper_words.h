// The words that a paper has of itself, whatever its report file says: who printed it, which page
// it is, that there is nothing on it. In the language of the paper.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace kaunter {

// A statutory form may be in Malay, for every reader.
enum class PaperLanguage { english, chinese, malay };

std::optional<PaperLanguage> PaperLanguageNamed(std::string_view name);

class PaperWords {
 public:
  explicit PaperWords(PaperLanguage language) : language_(language) {}

  std::string Printed(const std::string& when, const std::string& by) const;
  std::string PageOf(std::size_t page, std::size_t of) const;  // "Page 1 of 3"
  std::string NoRows() const;
  std::string Continued() const;  // behind the heading of a group that began on an earlier page
  std::string Others() const;     // the bar of all that a chart has no room for

 private:
  std::string In(const char* english, const char* chinese, const char* malay) const;

  PaperLanguage language_;
};

}  // namespace kaunter
