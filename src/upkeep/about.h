// What support asks first: which program works on which office, where its files lie, whether it is
// backed up, how full it is and what was slow today. No word of a person stands in it.
#pragma once

#include <string>
#include <vector>

#include "core/slow_statements.h"
#include "screen/caption.h"

namespace kaunter {

class Session;

struct AboutLine {
  Caption what;
  Caption is;
};

struct AboutOffice {
  std::vector<AboutLine> lines;
  std::vector<SlowStatement> slow;  // of today, on this PC
};

// How many customers and loans there are is told to whoever sees all companies.
enum class RowCounts { told, withheld };

// What cannot be read is told as that: never throws for an office that is away.
AboutOffice TellAbout(Session& session, RowCounts counts);

// As a text for a letter to support.
std::string AboutText(const AboutOffice& about, bool chinese);

}  // namespace kaunter
