// SPDX-License-Identifier: Apache-2.0
// A program that uses the library: prints the documents of a register by title.
//   consumer REGISTER
#include <kvvesk/kvvesk.h>

#include <iostream>

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: consumer REGISTER\n";
    return 2;
  }
  try {
    // Open as long as it lives. Reading asks for no log-in.
    const kv::Session vesk(argv[1]);
    const auto documents = vesk->GetRecordset(
        "Select DocumentNumber, DocumentTitle From Documents Order By DocumentTitle");
    for (const auto& row : documents->rows())
      std::cout << row.text("DocumentNumber") << '\t' << row.text("DocumentTitle") << '\n';
    return 0;
  } catch (const kv::Error& e) {
    std::cerr << "error " << e.number() << ": " << e.description() << '\n';
    return 1;
  }
}
