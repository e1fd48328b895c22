// The settings of this PC: one text file per user or installation, read once at start.
//
//   # comment
//   ConnAccount = MainUser
//   ConnDataSource = Office
//   ConnDatabase =
//   ConnLinkAcc = 1
//   ShortDate = dd-MM-yyyy
//   Trace = /home/aminah/kaunter-trace.txt
//   BackupFolder = /media/backup/kaunter
//   DataFolder = /srv/kaunter
//   MyKadReader = /opt/card-reader
//   Camera = Integrated
//
//   [Office]
//   file = /srv/kaunter/office.db
//   [Branch]
//   odbc = Driver={ODBC Driver 18 for SQL Server};Server=branch-01
//
// A section is a data source. `create = yes` lets an embedded file be made when it is missing;
// `fill` names the folder whose *.sql files then give a stand-in for another program's database its
// first rows.
#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>

#include "platform/sql/data_source.h"

namespace kaunter {

struct LocalSettings {
  std::string ConnAccount = "MainUser";
  std::string ConnDataSource = "Kaunter";
  std::string ConnDatabase;
  std::string ConnLinkAcc;
  std::string ShortDate;  // the PC's short date when the machine's own setting is not to count; may
                          // be empty
  std::string BackupFolder;  // where backups of the office go; may be empty
  std::string DataFolder;    // of logs, pictures and the office's own files; may be empty
  std::string Now;          // for practice: "yyyy-mm-dd hh:mm:ss" that the clock says; may be empty
  std::string MyKadReader;  // folder of the card reader's program, where it is in none of its own
  std::string Camera;       // a part of the camera's name, or a picture in the place of one
  std::string Trace;        // file that takes every statement; may be empty
  DataSources sources;
  std::set<std::string>
      creatable;  // lower-case names of embedded sources that may be made when missing
  std::map<std::string, std::string> fill;  // lower-case name of a source to its folder

  // Throws std::runtime_error that names file, line and what to do for a text that does not parse.
  static LocalSettings Parse(std::string_view text, const std::string& path);
  // The file that counts (SettingsFile in core/places.h) when `path` is empty; where there is none,
  // the defaults: the embedded database in the user's data folder, made at the first start. A named
  // file that cannot be read is an error.
  static LocalSettings Read(const std::string& path);
  // The same, with an embedded database file in the place of the data source when `database` is not
  // empty. The user's own file then does not count.
  static LocalSettings Read(const std::string& path, const std::string& database);
};

}  // namespace kaunter
