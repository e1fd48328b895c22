// A picture that waits in the photo folder until its record is saved, and goes when it is not.
#pragma once

#include <string>
#include <string_view>

namespace kaunter {

class Session;

class WaitingPicture {
 public:
  // Named cust1.jpg, cust2.jpg ... for "cust" and ".jpg"; the first has no number unless
  // `numbered`.
  WaitingPicture(std::string stem, std::string ending, bool numbered = true);
  ~WaitingPicture() { Drop(); }
  WaitingPicture(const WaitingPicture&) = delete;
  WaitingPicture& operator=(const WaitingPicture&) = delete;

  // A file of its own, empty as yet, in the place of the one before; nobody else on this folder
  // gets the same. Throws std::runtime_error.
  const std::string& Reserve(const Session& session);
  const std::string& path() const { return path_; }  // "" for none
  void Drop();
  // The picture of another, where it has one: a file without bytes is none.
  void Take(WaitingPicture& other);

 private:
  std::string stem_;
  std::string ending_;
  bool numbered_;
  std::string path_;
};

// The bytes of a picture as a database column or a file gives them: as they are, or in hexadecimal
// digits. "" for what is no picture that a screen can show, or one that breaks off.
std::string PictureBytes(std::string bytes);

}  // namespace kaunter
