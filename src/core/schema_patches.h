// The patches that bring an office's database up to this version of the program: what each one
// runs.
//
// A patch is guarded by a key in Systemast: the program runs it once, at the first connect that
// finds the key empty, and never again. There is no version number and no other upgrade tool.
#pragma once

#include <string_view>
#include <vector>

#include "platform/sql/connection.h"

namespace kaunter {

struct Patch {
  std::string_view key;
  std::vector<std::string_view> statements;  // the insert of the key included, in its place
};

namespace patches {

extern const Patch kDrawdown;
extern const Patch kAmla;
extern const Patch kDataExportFlag;
extern const Patch kDisableSTR;
extern const Patch kLampiranA;
extern const Patch kIdeal;
extern const Patch kOrgDueDate;
extern const Patch kEInv;
extern const Patch kEInvCustName;
extern const Patch kEInvCancel;
extern const Patch kLocalClientSecret;
extern const Patch kOrgDueDate2;
extern const Patch kLHDNQR;
extern const Patch kLastDownDate;
extern const Patch kCreateSelfBillTable;
extern const Patch kSuppCity;
extern const Patch kLongDescription;
extern const Patch kChargeIndex;
extern const Patch kCompanyPictures;
extern const Patch kCashBookOpening;
extern const Patch kEInvSending;
extern const Patch kPaymentReaderLine;
extern const Patch kEInvCodes;
extern const Patch kMoveIn;
extern const Patch kWatchListCopy;
extern const Patch kLongQR;
extern const Patch kBaseIndexes;
extern const Patch kSaveMark;
extern const Patch kYearIndexes;
extern const Patch kReasonIndexes;
extern const Patch kSharedFigures;

// Made when the table is missing, without a key.
extern const std::string_view kHolidayMast;
// Runs at every start, without any guard: loans made by other programs have no first due date yet.
extern const std::string_view kFillOrgDueDate;

}  // namespace patches

// What the patch makes and is there already, since an administrator made it or the office began
// with it: a failure, or left as it is.
enum class Existing { fails, stays };

// Runs the statements of a patch in one transaction: a failure leaves the key as it was, and the
// next start tries again. `found` is what the key held; where it holds something else by now,
// another desktop has run the patch meanwhile and nothing is left to do. Throws SqlError.
void RunPatch(Connection& main, const Patch& patch, std::string_view found,
              Existing existing = Existing::fails);

}  // namespace kaunter
