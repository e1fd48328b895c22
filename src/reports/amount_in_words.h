// An amount spelt out, as receipts and cheques demand it: figures can be altered with one stroke of
// a pen, words cannot.
#pragma once

#include <string>

#include "platform/money.h"

namespace kaunter {

// "RINGGIT MALAYSIA ONE THOUSAND TWO HUNDRED THIRTY FOUR AND SEN FIFTY ONLY". Rounded to whole sen,
// ties away from zero, as the figures beside it are shown.
std::string AmountInWords(Money amount);

}  // namespace kaunter
