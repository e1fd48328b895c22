// The figures of the home page, shared by those who see the same. In a large office they take
// seconds to read, and thirty desktops that each read them would keep the server busy with nothing
// else: one of them reads, and for a time the others show what it has read. Figures that are cheap
// to read are never shared, so that a small office always sees those of now.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/cash_figures.h"
#include "core/income_figures.h"
#include "core/office_figures.h"

namespace kaunter {

struct HomeReading {
  OfficeFigures office;
  std::vector<CashPosition> cash;
  std::vector<UnsentIncome> unsent;
};

// A text of these figures, and back; nothing for a text that is no such figures, or those of
// another day or of another version of the program.
std::string PackReading(HomeReading reading);
std::optional<HomeReading> UnpackReading(std::string_view text, const DateTime& today);

class SharedFigures {
 public:
  // `view` tells what is seen: who has the same one sees the same figures.
  SharedFigures(Session& session, std::string_view view);

  struct Found {
    bool fresh = false;       // good enough to be shown instead of a reading of one's own
    bool being_read = false;  // by another desktop: its figures will be there soon
    DateTime read_at;         // where there are any
    std::optional<HomeReading> reading;  // of today; it may be older than `fresh`
  };
  // Where nothing fresh is found and nobody else is reading, the caller is taken to read from here
  // on.
  Found Look(const DateTime& now);
  // What was read from that time on and took so long, in milliseconds, is there for others.
  void Keep(const DateTime& begun_at, double milliseconds, HomeReading reading);
  // They have become cheap.
  void TakeAway();

 private:
  Session& session_;
  std::string key_;
  bool kept_ = false;  // as far as is known
};

}  // namespace kaunter
