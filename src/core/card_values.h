// What an identity card says, and the order in which the reader's program writes it down.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "screen/caption.h"

namespace kaunter {

enum class CardField {
  name,
  new_ic,
  old_ic,
  gender,
  race,
  birth_date,
  add1,
  add2,
  add3,
  postcode,
  city,
  state,
  religion,
  citizenship,
  none  // a line that nobody asks for
};

class CardValues {
 public:
  std::string& operator[](CardField field) { return texts_[static_cast<std::size_t>(field)]; }
  const std::string& operator[](CardField field) const {
    return texts_[static_cast<std::size_t>(field)];
  }

  // Blanks and control signs go, a new IC takes its mask, a gender becomes MALE or FEMALE and
  // anything else none.
  void Tidy();
  bool empty() const;

 private:
  std::array<std::string, static_cast<std::size_t>(CardField::none) + 1> texts_;
};

// "MALE" for L, LELAKI, M and MALE, "FEMALE" for P, PEREMPUAN, F and FEMALE; "" for anything else.
std::string CardGender(std::string_view text);

// What the lines of MyKad.txt hold, from the first. MyKadLines.txt beside the program tells it, and
// before it the office's own in the folder OwnReports; without either the shipped order holds.
// Throws CardTrouble for a file with a name that is none.
std::vector<CardField> MyKadLines(const std::string& app_path);

// The lines of a text in any encoding, with any ends; none for what is no text.
std::vector<std::string> CardLines(const std::string& bytes);

// The values of a file of the reader's program. Throws CardTrouble where lines are missing, and
// where no identity number stands where one should.
CardValues CardValuesOf(const std::string& bytes, const std::vector<CardField>& lines);

// Why no card could be read, in the words under which it is told.
struct CardTrouble {
  Caption title;
  Caption text;
};

}  // namespace kaunter
