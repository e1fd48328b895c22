// Small rules for texts and folders that many screens share.
#pragma once

#include <string>
#include <string_view>

namespace kaunter {

class Session;

// ASCII letters only: names in other scripts stand as they are.
std::string Upper(std::string_view text);
std::string Lower(std::string_view text);
std::string Trim(std::string_view text);                // blanks at both ends
bool SameText(std::string_view a, std::string_view b);  // without regard to ASCII case

// Upper case when the office's CapLock setting is on, else unchanged. Boxes pass through it when
// they are left, not at save.
std::string ApplyCapLock(const Session& session, std::string_view text);
// The house's own month lengths: February has 29 days in every year divisible by 4, centuries
// included. That is wanted; the true calendar is CalendarDaysInMonth.
int DaysInMonth(int month, int year);
// Makes PhotoPath/name when it is no folder yet. Throws std::filesystem::filesystem_error.
void EnsurePhotoFolder(const Session& session, std::string_view name);

}  // namespace kaunter
