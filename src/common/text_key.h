// SPDX-License-Identifier: Apache-2.0
// The two keys by which all text is compared, the same on every engine.
//
// fold  = root lower case, with the final sigma as sigma. Equality, joins, In, Distinct, Group By,
// Like and
//         unique indexes use it: case is ignored, accents count.
// order = fold decomposed, without the marks U+0300 to U+036F; then fold, to part what is equal so
// far. <, >,
//         Between, Min, Max and Order By use it: "é" sorts beside "e", not behind "z".
//
// Both compare byte by byte, which in UTF-8 is by code point.
#pragma once

#include <string>
#include <string_view>

namespace kv {

[[nodiscard]] std::string foldKey(std::string_view text);

// The two parts of the order key in one byte string. A zero byte parts them, and for text that is
// plain ASCII after folding, where both parts are equal, the second is left out; neither changes
// the order.
[[nodiscard]] std::string orderKey(std::string_view text);

// As foldKey and orderKey, into a buffer that is reused; nothing is allocated once it has grown.
void foldKeyInto(std::string_view text, std::string& out);
void orderKeyInto(std::string_view text, std::string& out);

}  // namespace kv
