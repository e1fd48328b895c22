// Offices as earlier versions of the program left them (offices.tar.xz), and how they are looked at
// without this version's eyes: tables, columns, indexes and rows as the engine itself tells them.
#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "core/session.h"
#include "platform/clock.h"

namespace kaunter::test {

// The files of the archive with this ending, by their names: the oldest first.
std::vector<std::string> OldOffices(const std::string& ending);

struct Column {
  std::string type;
  bool refuses_null = false;  // and has no default: whoever does not know it cannot insert
};
struct Shape {
  std::map<std::string, std::map<std::string, Column>> tables;
  std::set<std::string> indexes;  // "LoanMast(CompCode,LoanID)"
};

// Where an office lies, and how it is asked past the program.
class OfficePlace {
 public:
  virtual ~OfficePlace() = default;
  virtual std::string Settings() const = 0;  // of the data source
  virtual Shape ShapeOf() const = 0;
  virtual std::string Everything() const = 0;  // all that is stored, in one order
};

class EmbeddedPlace : public OfficePlace {
 public:
  explicit EmbeddedPlace(std::string file) : file_(std::move(file)) {}
  const std::string& file() const { return file_; }
  std::string Settings() const override { return "file = " + file_; }
  Shape ShapeOf() const override;
  std::string Everything() const override;

 private:
  std::string file_;
};

// A database of the server that script/with-postgresql has started.
class ServerPlace : public OfficePlace {
 public:
  // `port`: of what stands before the server; "" for none.
  explicit ServerPlace(std::string name, std::string port = {})
      : name_(std::move(name)), port_(std::move(port)) {}
  // From a dump, from another database, or empty.
  void Load(const std::string& dump) const;
  void CopyFrom(const ServerPlace& other) const;
  void Make() const;
  std::string Settings() const override;
  Shape ShapeOf() const override;
  std::string Everything() const override;

 private:
  std::string name_;
  std::string port_;
};

// Starts this version of the program on the office, as far as its main window. The first statement
// that `fault` throws for plays a failing engine. Throws what the start ended with.
void StartOn(const OfficePlace& place, const std::function<void(Connection&)>& look = {},
             const std::function<void(std::string_view)>& fault = {});

// What the older has and the newer lacks, or has in another way; "" for nothing.
std::string Lacks(const Shape& newer, const Shape& older);

}  // namespace kaunter::test
