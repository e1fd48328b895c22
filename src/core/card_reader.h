// Reading an identity card: by the reader's own program and the files that it leaves, by the older
// one that fills a table, or out of what an earlier edition kept of a card.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/card_values.h"

namespace kaunter {

class Screen;
class Session;
class ReadMyKadfrm;

struct CardReading {
  CardValues values;
  std::string photo;  // a picture's bytes; empty for none
  // When it was read, year first, where it comes from what was kept; else empty.
  std::string kept_on;
};

// One way of coming by what a card says.
class CardSource {
 public:
  virtual ~CardSource() = default;
  // Nothing where it has no card to tell of, or the person gave up. Throws CardTrouble, or what a
  // file or database does.
  virtual std::optional<CardReading> Read(ReadMyKadfrm& wait) = 0;
};

// Those that this PC has, in the order in which they are asked. `ic` is the number in the person's
// box: an old reading is looked for by nothing else.
std::vector<std::unique_ptr<CardSource>> CardSources(Session& session, const std::string& ic);

// Reads the card in the reader for the screen: fills `values` and writes the photo, where there is
// one, to `photo_file` (none is wanted where it is empty). False, and told, where nothing was read.
bool ReadMyKad(Session& session, const Screen& screen, const std::string& ic, CardValues& values,
               const std::string& photo_file);

}  // namespace kaunter
