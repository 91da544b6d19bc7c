// SPDX-License-Identifier: Apache-2.0
// What the root object raises: codes, sources and texts in one table.
#pragma once

#include <string>

#include "common/error.h"
#include "common/export.h"
#include "common/library_error.h"

namespace kv {

// The two about the layout are followed directly by the version this library is made for.
inline constexpr LibraryError kLayoutTooOld{2501, "OpenConnection",
                                            "The Vesk Database needs to be converted to version: "};
inline constexpr LibraryError kLayoutTooNew{2502, "OpenConnection",
                                            "Vesk needs to be updated to use this database."};
inline constexpr LibraryError kUserDataTooOld{2503, "OpenConnection",
                                              "The user/action datasource needs to be converted."};
inline constexpr LibraryError kUnconnected{2505, "Login", "Vesk is unconnected to datasource"};
inline constexpr LibraryError kWrongPassword{2506, "Login", "UserName or Password is incorrect"};

// Actions cannot be reached; each operation has a code of its own for it.
inline constexpr LibraryError kNoActionsToSend{2524, "Vesk.SendActions",
                                               "Unable to connect to Action System"};
inline constexpr LibraryError kNoActionsToGet{2525, "GetActions",
                                              "Unable to connect to Action System"};
inline constexpr LibraryError kNoActionsToHave{2526, "Vesk.HasActions",
                                               "Unable to connect to Action System"};
inline constexpr LibraryError kNoActionsToClose{2527, "CompleteCloseAction",
                                                "Unable to connect to Action System"};

inline constexpr LibraryError kNoLocation{2550, "SetExternalActionSystem",
                                          "Valid Connection String Required"};

// What stands before the location of a database of users and actions.
inline constexpr std::string_view kUserDatabaseAt =
    "Provider=Microsoft.Jet.OLEDB.3.51;Persist Security Info=False;Data Source=";
// What is said first when it cannot be opened: at an opening of the register, and when it is to be
// switched on.
inline constexpr std::string_view kUserDatabaseFailed =
    "The Following Error Occured Opening External User/Action DataSource : ";
inline constexpr std::string_view kUserDatabaseRefused =
    "Unable to connect to external Database :\r\n";

// A register was opened, but not its database of users and actions: the session is open all the
// same.
class KVVESK_API UserDatabaseError : public Error {
 public:
  explicit UserDatabaseError(const Error& e)
      : Error(e.number(), e.source(), std::string(kUserDatabaseFailed) + e.description(), e.where(),
              e.cause()) {}
};

}  // namespace kv
