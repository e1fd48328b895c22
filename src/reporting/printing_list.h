// The list of documents that the printing desk offers for a loan: a text file beside the program,
// so that an office adds its own forms without a new program.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kaunter {

struct ListedDocument {
  std::string title;
  std::string file;   // of the report
  std::string field;  // of the report that takes the loan: "{LoanMast.LoanID}"; "" for none
};

struct PrintingList {
  std::vector<ListedDocument> documents;  // by line
  bool complete = false;  // false: missing, unreadable or too long; what was read until then counts
};

// The most lines that a list may have.
inline constexpr std::size_t kLongestPrintingList = 51;

// Title, report file and report field, parted by commas, a line each; a text with a comma stands in
// double quotes. An empty title ends the list.
PrintingList ReadPrintingList(const std::string& path);

// What a loan of this LoanType is offered: the second line is for unsecured loans alone, the third
// for secured ones, and customer due diligence only while the company takes part in AML.
std::vector<ListedDocument> DocumentsFor(const std::vector<ListedDocument>& documents,
                                         std::string_view loan_type, bool aml_on);

}  // namespace kaunter
