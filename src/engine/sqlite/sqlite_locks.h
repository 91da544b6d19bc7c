// SPDX-License-Identifier: Apache-2.0
// Which connections of this process hold the write lock of a file.
//
// Calls run to completion on one thread. A connection that waits for another one of the same thread
// waits for itself: nobody gives the lock up before the wait is over. So nobody waits then.
#pragma once

struct sqlite3;

namespace kv::engine {

// The connection has begun a transaction that writes, and will end it on the same thread.
void writeLockTaken(sqlite3* connection);
// The connection has ended its transaction, or goes.
void writeLockGiven(sqlite3* connection) noexcept;
// Whether this thread holds the write lock of the connection's file through another connection.
[[nodiscard]] bool ownThreadHoldsLock(sqlite3* connection) noexcept;

}  // namespace kv::engine
