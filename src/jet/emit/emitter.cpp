// SPDX-License-Identifier: Apache-2.0
#include "jet/emit/emitter.h"

#include "jet/emit/changes.h"
#include "jet/emit/select_writer.h"

namespace kv::jet {

namespace {

// A SELECT whose rows have keys is three texts, any other one.
void emitSelect(const BoundSelect& s, const std::vector<Literal>& literals, bool lifted,
                const Dialect& dialect, Emitted& out) {
  const auto text = [&](std::string (SelectWriter::*part)(), int firstParam = 1) {
    ExpressionWriter expressions(s.scope, literals, lifted, dialect, firstParam);
    return expressions.finish((SelectWriter(s, expressions).*part)());
  };
  if (!s.keyed) {
    out.whole = text(&SelectWriter::whole);
    return;
  }
  out.keys = text(&SelectWriter::keysOnly);
  out.head = text(&SelectWriter::head);
  out.rows = text(&SelectWriter::rowsByKey, 2);  // parameter 1 is the list of keys
}

}  // namespace

Emitted emit(const BoundStatement& bound, const std::vector<Literal>& literals, bool lifted,
             const Dialect& dialect) {
  Emitted out;
  switch (bound.statement.kind) {
    case StatementKind::Insert: out.whole = emitInsert(bound, literals, lifted, dialect); break;
    case StatementKind::Update: out.whole = emitUpdate(bound, literals, lifted, dialect); break;
    case StatementKind::Delete: out.whole = emitDelete(bound, literals, lifted, dialect); break;
    case StatementKind::Select: emitSelect(*bound.select, literals, lifted, dialect, out); break;
  }
  return out;
}

}  // namespace kv::jet
