// Files that a person drops onto a table, or pastes there; a picture that is pasted becomes a file.
#pragma once

#include <QTableView>
#include <functional>
#include <string>
#include <vector>

namespace kaunter {

// Calls `take` with full paths, once the drop itself is over. The file of a pasted picture is gone
// when `take` has returned.
void CatchFiles(QTableView& table, std::function<void(const std::vector<std::string>& files)> take);

}  // namespace kaunter
