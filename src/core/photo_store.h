// The file of an earlier edition that keeps what cards said, with their photos: table CustPhoto of
// the local data source "photo". Offices without one have nothing of it.
#pragma once

#include <optional>
#include <string>

#include "core/card_reader.h"

namespace kaunter {

// The newest reading of this number. Throws SqlError.
std::optional<CardReading> FindInPhotoStore(const Session& session, const std::string& ic);

// Adds a row for a reading. A failure is told on behalf of the screen, and the reading stands.
void KeepInPhotoStore(Session& session, const Screen& screen, const CardReading& reading);

bool HasPhotoStore(const Session& session);

}  // namespace kaunter
