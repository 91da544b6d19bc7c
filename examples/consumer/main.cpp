// SPDX-License-Identifier: Apache-2.0
// A program that uses the library: prints the documents of a register by title.
//   consumer REGISTER
#include <kvvesk/kvvesk.h>

#include <iostream>

namespace {

void printDocuments(kv::clsVesk& vesk) {
  const auto documents = vesk.GetRecordset(
      "Select DocumentNumber, DocumentTitle From Documents Order By DocumentTitle");
  for (const auto& row : documents->rows())
    std::cout << row.text("DocumentNumber") << '\t' << row.text("DocumentTitle") << '\n';
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: consumer REGISTER\n";
    return 2;
  }
  // Reading asks for no log-in. With one, kv::Session opens, logs in and closes by its scope.
  const auto vesk = kv::clsVesk::create();
  int status = 0;
  try {
    vesk->OpenConnection(argv[1]);
    printDocuments(*vesk);
  } catch (const kv::Error& e) {
    std::cerr << "error " << e.number() << ": " << e.description() << '\n';
    status = 1;
  }
  vesk->CloseSession();
  return status;
}
