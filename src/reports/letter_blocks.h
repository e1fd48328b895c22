// What the lines of a letter become for one record: blocks of marks with a height, in reading
// order, that may go to a page one after the other.
#pragma once

#include <vector>

#include "reports/report_document.h"
#include "reports/report_file.h"
#include "reports/report_picture.h"
#include "reports/report_table.h"
#include "reports/report_texts.h"

namespace kaunter {

struct LetterBlock {
  ReportPage marks;  // from the block's own top edge; x is the page's
  double height = 0;
  bool new_page = false;    // the block begins one
  bool keeps_next = false;  // stands on the page of the block behind it
  int head = -1;            // the block that is repeated above this one when it begins a page
  FileLine line;
};

// Puts the marks `down` millimetres lower onto a page.
void PutMarks(const ReportPage& marks, double down, ReportPage& page);
// A dashed line over the whole sheet.
void CutLine(ReportPage& page, double y, double sheet_width);

std::vector<LetterBlock> ComposeLetter(const ReportFile& file, const ReportTexts& texts,
                                       const ReportTable& table, HeadPictures& pictures,
                                       RowSpan span);

}  // namespace kaunter
