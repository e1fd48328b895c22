// Small pictures side by side; one may be picked.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "screen/control.h"

namespace kaunter {

class PictureStrip : public Picture {
 public:
  struct Item {
    std::string path;
    std::string caption;
    auto operator<=>(const Item&) const = default;
  };
  using Picture::Picture;
  const std::vector<Item>& items() const { return items_; }
  void SetItems(std::vector<Item> items) {
    items_ = std::move(items);
    Changed();
  }
  // The captions, with commas between.
  std::string Text() const override {
    std::string text;
    for (const Item& item : items_) text += (text.empty() ? "" : ", ") + item.caption;
    return text;
  }
  std::function<void(int item)> onPick;

 private:
  std::vector<Item> items_;
};

}  // namespace kaunter
