// SPDX-License-Identifier: Apache-2.0
// The errors of the SQL front end: the well-known numbers and texts, each followed by the place in
// the statement and what stands there.
#pragma once

#include <string_view>

#include "common/error.h"

namespace kv::jet {

// Well-known texts. The numbers in the comments are the native ones that clients may know them by.
inline constexpr std::string_view kMissingOperator =  // 3075
    "Syntax error (missing operator) in query expression.";
inline constexpr std::string_view kBadString =
    "Syntax error in string in query expression.";                                         // 3076
inline constexpr std::string_view kBadDate = "Syntax error in date in query expression.";  // 3077
inline constexpr std::string_view kBadBrackets = "Invalid bracketing of name.";            // 3126
inline constexpr std::string_view kNotAStatement =                                         // 3129
    "Invalid SQL statement; expected 'DELETE', 'INSERT', 'SELECT', or 'UPDATE'.";
inline constexpr std::string_view kBadFrom = "Syntax error in FROM clause.";              // 3131
inline constexpr std::string_view kBadInsert = "Syntax error in INSERT INTO statement.";  // 3134
inline constexpr std::string_view kBadJoin = "Syntax error in JOIN operation.";           // 3135
inline constexpr std::string_view kBadOrderBy = "Syntax error in ORDER BY clause.";       // 3138
inline constexpr std::string_view kBadGroupBy = "Syntax error in GROUP BY clause.";
inline constexpr std::string_view kBadDelete = "Syntax error in DELETE statement.";
inline constexpr std::string_view kBadSelect =  // 3141
    "The SELECT statement includes a reserved word or an argument name that is misspelled or "
    "missing, or the punctuation is incorrect.";
inline constexpr std::string_view kTrailingText =  // 3142
    "Characters found after end of SQL statement.";
inline constexpr std::string_view kBadUpdate = "Syntax error in UPDATE statement.";  // 3144
inline constexpr std::string_view kTooNested = "The expression is too deeply nested.";
inline constexpr std::string_view kAmbiguous =  // 3079
    "The specified field could refer to more than one table listed in the FROM clause of your SQL "
    "statement.";
inline constexpr std::string_view kTableTwice =  // 3012
    "A table name or alias occurs twice in the FROM clause.";
inline constexpr std::string_view kUndefinedFunction =  // 3085
    "Undefined function in expression.";
inline constexpr std::string_view kNotAvailableHere =
    "This operator is not available in a query expression.";
inline constexpr std::string_view kWrongArguments =  // 3071
    "Wrong number of arguments used with function in query expression.";
inline constexpr std::string_view kNotAggregated =  // 3122
    "You tried to execute a query that does not include the specified expression as part of an "
    "aggregate function.";
inline constexpr std::string_view kAggregateHere =  // 3096
    "Cannot have aggregate function in this clause.";
inline constexpr std::string_view kOrderByDistinct =  // 3093
    "ORDER BY clause conflicts with DISTINCT.";
inline constexpr std::string_view kUnknownInsertField =  // 3127
    "The INSERT INTO statement contains an unknown field name.";
inline constexpr std::string_view kValueCount =  // 3346
    "Number of query values and destination fields are not the same.";
inline constexpr std::string_view kNoValue =  // 3061
    "No value given for one or more required parameters.";
inline constexpr std::string_view kNoTable =  // 3078
    "The database engine cannot find the input table or query. Make sure it exists and that its "
    "name is spelled correctly.";
inline constexpr std::string_view kTypeMismatch =  // 3464
    "Data type mismatch in criteria expression.";
inline constexpr std::string_view kFieldTooSmall =  // 3163
    "The field is too small to accept the amount of data you attempted to add. Try inserting or "
    "pasting less data.";

// Throws `number` with the text, then " (position N: 'what stands there')"; positions count
// characters from 1.
[[noreturn]] void fail(std::int32_t number, std::string_view text, std::string_view statement,
                       TextRange where);

}  // namespace kv::jet
