// How far a report has come, and the wish to stop it.
#pragma once

#include <cstddef>
#include <functional>

namespace kaunter {

enum class ReportStage { reading, laying_out, writing };

// Told again and again while a long report is read, laid out and written: how many of how many rows
// or pages are done; while rows are read nobody knows, and both are 0. False stops the report.
// Within `reading` a statement is running: no other may be sent, and nothing thrown.
using ReportProgress = std::function<bool(ReportStage stage, std::size_t done, std::size_t of)>;

// Thrown by a report that was stopped: no failure, and nobody needs to be told.
struct ReportStopped {};

inline void TellProgress(const ReportProgress& told, ReportStage stage, std::size_t done,
                         std::size_t of) {
  if (told && !told(stage, done, of)) throw ReportStopped{};
}

}  // namespace kaunter
