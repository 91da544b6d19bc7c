// SPDX-License-Identifier: Apache-2.0
// A program that uses the library: prints the documents of a register by title.
//   consumer REGISTER
#include <kvvesk/kvvesk.h>

#include <iostream>

namespace {

void printDocuments(const std::string& location) {
  const auto vesk = kv::clsVesk::create();
  vesk->OpenConnection(location);
  const auto documents = vesk->GetRecordset(
      "Select DocumentNumber, DocumentTitle From Documents Order By DocumentTitle");
  for (; !documents->Eof(); documents->MoveNext())
    std::cout << kv::joinText(documents->Fields("DocumentNumber")->Value()) << '\t'
              << kv::joinText(documents->Fields("DocumentTitle")->Value()) << '\n';
  vesk->CloseSession();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: consumer REGISTER\n";
    return 2;
  }
  try {
    printDocuments(argv[1]);
    return 0;
  } catch (const kv::Error& e) {
    std::cerr << "error " << e.number() << ": " << e.description() << '\n';
    return 1;
  }
}
