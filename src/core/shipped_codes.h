// The public codes of the tax authority as this program carries them (schema/codes): states,
// countries, business codes, classes of goods and services, kinds of tax. An office without the
// central database begins with them; where that one is, its codes take their place.
#pragma once

namespace kaunter {

class Connection;

// Fills each code table that is there and has no row, all in one transaction. True when there was
// one. Throws SqlError.
bool FillEmptyCodeTables(Connection& main);

}  // namespace kaunter
