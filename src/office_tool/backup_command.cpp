#include "office_tool/backup_command.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <iostream>

#include "core/audit.h"
#include "core/values.h"
#include "office_tool/command.h"
#include "screen/caption_error.h"
#include "upkeep/backup.h"
#include "upkeep/office_place.h"
#include "upkeep/restore.h"

namespace kaunter {
namespace {

std::string FolderOf(const OfficeRun& run) {
  const std::string named = run.Value("--to");
  return named.empty() ? BackupFolderOf(run.session) : named;
}

std::string Shown(const DateTime& moment) { return Format(moment, "dd-MM-yyyy hh:nn:ss"); }

// Says each step. What fails, and does not tell itself what to do, stands behind `not_done`.
template <typename Work>
auto DoneOrTold(std::string_view not_done, const Work& work) {
  std::string said;
  try {
    return work([&said](const UpkeepStep& step) {
      if (step.what.english != said) OfficeRun::Say(said = step.what.english);
      return true;
    });
  } catch (const CaptionError&) {
    throw;
  } catch (const std::exception& failure) {
    throw std::runtime_error(
        fmt::format("{} {}\nMend the cause and do it again.", not_done, failure.what()));
  }
}

}  // namespace

int RunBackupCommand(OfficeRun& run) {
  const std::string keep = run.Value("--keep");
  const Keeping keeping = keep.empty() ? Keeping() : Keeping::Parse(keep);
  OpenReachedOffice(run.session, run.reach);
  OpenReachedTrail(run.session);
  const BackupResult result = DoneOrTold("No backup was made.", [&](const UpkeepGoOn& go_on) {
    return TakeBackup(run.session, FolderOf(run), keeping, go_on);
  });
  for (const Caption& warning : result.warnings) run.Report("Warning: " + warning.english);
  for (const std::string& folder : result.removed) run.Report("Removed " + folder);
  run.Report(fmt::format("Backed up into {}: {} loans, {} receipts", result.record->folder,
                         result.record->loans, result.record->receipts));
  return exit_status::kDone;
}

int RunBackupsCommand(OfficeRun& run) {
  for (const BackupRecord& record : BackupsIn(FolderOf(run))) {
    OfficeRun::Say(fmt::format("{}  {}  {} loans, {} receipts  {}", Shown(record.made),
                               record.office, record.loans, record.receipts, record.folder));
  }
  return exit_status::kDone;
}

namespace {

void Tell(const RestoreView& view) {
  const BackupRecord& record = view.record;
  const auto say = [](const std::string& line) { OfficeRun::Say(line); };
  say(fmt::format("Backup:  {} of {}, made on {}: {} loans, {} receipts", Shown(record.made),
                  record.office, record.machine, record.loans, record.receipts));
  say(fmt::format("         {}", record.folder));
  say(fmt::format("Office:  {}", view.office));
  if (!view.there) return say("         No office is there: nothing is lost.");
  if (!view.trouble.empty()) {
    say(fmt::format("         It cannot be read: {}", view.trouble));
    return say("         What was saved since the backup is lost.");
  }
  const Loss& loss = view.loss;
  say(fmt::format("Lost, of what was saved since {}: {} receipts, {} loans, {} customers",
                  Shown(record.made), loss.Receipts(), loss.loans, loss.customers));
  for (const CompanyLoss& company : loss.companies) {
    say(fmt::format("         {}: {} receipts, {}{}", company.company, company.receipts,
                    ShowMoney(company.amount),
                    company.first ? fmt::format(", entered {} to {}", Shown(*company.first),
                                                Shown(*company.last))
                                  : ""));
  }
  if (loss.deleted > 0) {
    say(fmt::format("         {} receipts were deleted since, and come back", loss.deleted));
  }
}

// In words that nobody says by mistake: the number of the receipts that go.
void Confirm(const OfficeRun& run, const RestoreView& view) {
  const bool known = view.there && view.trouble.empty();
  const std::string number = known ? std::to_string(view.loss.Receipts()) : "0";
  std::string typed = run.Value("--lose");
  if (typed.empty()) {
    OfficeRun::Say("Type the number of receipts that will be lost to go on:");
    std::getline(std::cin, typed);
  }
  if (Trim(typed) == number) return;
  throw CompanionRefused(fmt::format(
      "{} receipts will be lost, and this number was not typed: nothing was restored", number));
}

// One that is dated after today is of a clock that was wrong, and no later than the others for it.
const BackupRecord& NewestOf(const std::vector<BackupRecord>& backups, const DateTime& now) {
  const DateTime latest = now.AddDays(1);
  const auto newest = std::find_if(backups.begin(), backups.end(), [&](const BackupRecord& record) {
    return record.made <= latest;
  });
  if (newest == backups.end()) return backups.front();
  for (auto passed = backups.begin(); passed != newest; ++passed) {
    OfficeRun::Say(
        fmt::format("Passed over, for it is dated after today ({}): {}. To go back to it, name it.",
                    Shown(passed->made), passed->folder));
  }
  return *newest;
}

}  // namespace

int RunRestoreCommand(OfficeRun& run) {
  std::string folder = run.words.empty() ? "" : run.words.front();
  if (folder.empty()) {
    const auto backups = BackupsIn(FolderOf(run));
    if (backups.empty()) {
      throw CompanionRefused(fmt::format("There is no backup in {}", FolderOf(run)));
    }
    folder = NewestOf(backups, run.session.clock.Now()).folder;
  }
  const std::unique_ptr<OfficeRestore> restore = DoneOrTold(
      "Nothing was restored, the office is as it was.",
      [&](const UpkeepGoOn& go_on) { return PrepareRestore(run.session, folder, go_on); });
  const RestoreView& view = restore->view();
  Tell(view);
  if (!view.related && !run.Has("--another-office")) {
    throw CompanionRefused(
        "No company of this office is in the backup. If it is meant all the same, say "
        "--another-office");
  }
  if (view.moved && !run.Has("--moved-office")) {
    throw CompanionRefused(fmt::format(
        "The books of this office are in {} ({} {}): a restore here would open a second office "
        "beside it. Restore into that one; only where it is lost for good, say --moved-office",
        view.moved->place,
        view.moved->state == MoveMark::State::moved ? "moved there on" : "here is a copy, begun on",
        Shown(view.moved->at)));
  }
  Confirm(run, view);
  const std::string kept = restore->Run();
  run.Report(fmt::format(
      "Restored {} from {}{}", view.office, view.record.folder,
      view.trouble.empty() ? fmt::format(": {} receipts were lost", view.loss.Receipts()) : ""));
  if (view.moved) run.Report("It is opened again beside the one in " + view.moved->place);
  OpenReachedOffice(run.session, run.reach);
  OpenReachedTrail(run.session);
  WriteAudit(run.session, "Modify", "Restore", "",
             std::filesystem::path(view.record.folder).filename().string(), {});
  if (!kept.empty()) run.Report(fmt::format("The office as it was before: {}", kept));
  return exit_status::kDone;
}

}  // namespace kaunter
