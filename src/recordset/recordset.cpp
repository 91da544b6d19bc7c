// SPDX-License-Identifier: Apache-2.0
#include "recordset/recordset.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "common/convert.h"
#include "common/error.h"
#include "common/text.h"
#include "common/text_key.h"
#include "recordset/criteria.h"
#include "recordset/keyset_source.h"
#include "recordset/local_source.h"
#include "recordset/pending.h"
#include "recordset/row_view.h"
#include "recordset/row_window.h"
#include "recordset/snapshot_source.h"
#include "recordset/value.h"

namespace kv {

namespace {

constexpr double kSlotsPerGeneration = 4294967296.0;  // bookmarks: generation * 2^32 + slot

}  // namespace

struct Recordset::Shown {
  RowView view;
  RowWindow window;
};

// Every field asks these; here, where the compiler sees what they need.
inline std::size_t Recordset::places() const noexcept { return shown_->view.places(*source_); }
inline std::size_t Recordset::slotAt(std::size_t place) const noexcept {
  return shown_->view.slotAt(place);
}
inline bool Recordset::isHoleAt(std::size_t place) const { return source_->isHole(slotAt(place)); }
inline bool Recordset::isEmpty() const { return shown_->view.count(*source_) == 0; }
inline const engine::RowBlock& Recordset::block() const noexcept { return shown_->window.block(); }
inline std::size_t Recordset::currentRow() {
  if (row_ == kNoRow || !shown_->window.isFresh(*source_)) row_ = rowAt(currentPlace());
  return row_;
}

// ---- making, opening, closing ----

Recordset::Recordset(Private) : fields_(*this), shown_(std::make_unique<Shown>()) {}
Recordset::~Recordset() = default;

Ref<Recordset> Recordset::create() {
  auto set = std::make_shared<Recordset>(Private{});
  set->local_ = std::make_shared<LocalSource>();
  return set;
}

Ref<Recordset> Recordset::open(const std::shared_ptr<Database>& database,
                               PreparedStatement statement, std::int32_t cursorType,
                               std::int32_t lockType) {
  auto set = std::make_shared<Recordset>(Private{});
  set->CursorType(cursorType);
  set->LockType(lockType);
  const auto home = statement.home ? statement.home : database;
  std::shared_ptr<RowSource> source;
  if (statement.shape->bound.select->keyed)
    source = std::make_shared<KeysetSource>(home, std::move(statement));
  else
    source = std::make_shared<SnapshotSource>(home, std::move(statement));
  set->attach(std::move(source));
  return set;
}

void Recordset::attach(std::shared_ptr<RowSource> source) {
  source_ = std::move(source);
  cursorType_ = source_->keyed() ? kKeyset : kStatic;
  takeRows();
  open_ = true;
}

void Recordset::takeRows() const {
  RowWindow window;
  window.takeHead(*source_);
  shown_->view = RowView(*source_, window, shown_->view.filter(),
                         shown_->view.sort());  // nothing else can fail
  shown_->window = shown_->view.isPlain() ? std::move(window) : RowWindow();
  generation_ = source_->generation();
  moveTo(first());
  if (!pending_) return;
  pending_->left = position_;
  if (pending_->adding) return;
  // On the row that is edited. Where it is not among the new ones no row is current, and the next
  // move leads to the first.
  const auto slot = source_->slotOf(pending_->row);
  const auto place = slot ? shown_->view.placeOf(*slot) : std::nullopt;
  moveTo(place ? Position{At::Row, *place} : Position{At::Bof, 0});
}

void Recordset::Open() {
  if (open_) raise(kAlreadyOpen);
  if (!local_ || local_->columns().empty()) raise(kNoConnection);
  attach(local_);
}

void Recordset::Close() {
  requireOpen();
  if (pending_) raise(kNotAllowed);
  open_ = false;
  row_ = kNoRow;
  source_.reset();
  local_.reset();
  shown_->view = RowView();
  shown_->window = RowWindow();
}

std::int32_t Recordset::State() const noexcept { return open_ ? kStateOpen : kStateClosed; }

std::int32_t Recordset::EditMode() const {
  requireOpen();
  if (!pending_) return kEditNone;
  return pending_->adding ? kEditAdd : kEditInProgress;
}

void Recordset::CursorType(std::int32_t type) {
  if (open_) raise(kAlreadyOpen);
  if (type < kForwardOnly || type > kStatic) raise(kBadArgument);
  cursorType_ = type;
}

void Recordset::LockType(std::int32_t type) {
  if (open_) raise(kAlreadyOpen);
  if (type < kReadOnly || type > kBatchOptimistic) raise(kBadArgument);
  lockType_ = type;
}

bool Recordset::Supports(std::int32_t options) const {
  requireOpen();
  std::int32_t able = kSupportsHoldRecords | kSupportsMovePrevious | kSupportsBookmark |
                      kSupportsApproxPosition | kSupportsFind;
  if (lockType_ != kReadOnly) {
    if (source_->canUpdate()) able |= kSupportsUpdate;
    if (source_->canAdd()) able |= kSupportsAddNew;
    if (source_->canDelete()) able |= kSupportsDelete;
  }
  return (options & ~able) == 0;
}

void Recordset::requireOpen() const {
  if (!open_) raise(kClosed);
}

void Recordset::requireRows() const {
  requireOpen();
  if (generation_ != source_->generation()) takeRows();
}

void Recordset::requireData() const {
  requireRows();
  if (!source_->connected()) raise(kNoConnection);
}

void Recordset::requireWritable() const {
  requireData();
  if (lockType_ == kReadOnly) raise(kNotAvailable);
}

// ---- places and holes ----

std::size_t Recordset::currentPlace() const {
  requireRows();
  if (position_.at != At::Row) raise(kNoCurrentRow);
  if (isHoleAt(position_.place)) source_->raiseHole(slotAt(position_.place));
  return position_.place;
}

bool Recordset::stepForward(Position& position) const {
  if (position.at == At::Eof) return false;
  std::size_t place = position.at == At::Bof ? 0 : position.place + 1;
  while (place < places() && isHoleAt(place)) ++place;
  position = place < places() ? Position{At::Row, place} : Position{At::Eof, 0};
  return position.at == At::Row;
}

bool Recordset::stepBackward(Position& position) const {
  if (position.at == At::Bof) return false;
  std::size_t place = position.at == At::Eof ? places() : position.place;
  while (place > 0 && isHoleAt(place - 1)) --place;
  position = place > 0 ? Position{At::Row, place - 1} : Position{At::Bof, 0};
  return position.at == At::Row;
}

Recordset::Position Recordset::first() const {
  Position position{At::Bof, 0};
  stepForward(position);
  return position;
}

Recordset::Position Recordset::last() const {
  Position position{At::Eof, 0};
  stepBackward(position);
  return position;
}

bool Recordset::Eof() const {
  requireRows();
  if (pending_ && pending_->adding) return false;
  return position_.at == At::Eof || (position_.at == At::Bof && isEmpty());
}

bool Recordset::Bof() const {
  requireRows();
  if (pending_ && pending_->adding) return false;
  return position_.at == At::Bof || (position_.at == At::Eof && isEmpty());
}

std::int32_t Recordset::RecordCount() const {
  requireRows();
  return static_cast<std::int32_t>(shown_->view.count(*source_));
}

// ---- moves ----

void Recordset::saveFirst() {
  requireData();
  if (pending_) Update();
}

void Recordset::MoveFirst() {
  saveFirst();
  if (isEmpty()) raise(kNoCurrentRow);
  moveTo(first());
}

void Recordset::MoveLast() {
  saveFirst();
  if (isEmpty()) raise(kNoCurrentRow);
  moveTo(last());
}

void Recordset::MoveNext() {
  saveFirst();
  if (position_.at == At::Eof || (position_.at == At::Bof && isEmpty())) raise(kNoCurrentRow);
  stepForward(position_);
  row_ = kNoRow;
}

void Recordset::MovePrevious() {
  saveFirst();
  if (position_.at == At::Bof || (position_.at == At::Eof && isEmpty())) raise(kNoCurrentRow);
  stepBackward(position_);
  row_ = kNoRow;
}

void Recordset::Move(std::int32_t NumRecords, const Variant& Start) {
  saveFirst();
  if (isEmpty() && position_.at != At::Row) raise(kNoCurrentRow);
  Position position = startOf(Start);
  if (NumRecords > 0) {
    if (position.at == At::Eof) raise(kNoCurrentRow);
    for (std::int32_t i = 0; i < NumRecords && stepForward(position); ++i) {
    }
  } else if (NumRecords < 0) {
    if (position.at == At::Bof) raise(kNoCurrentRow);
    for (std::int32_t i = 0; i > NumRecords && stepBackward(position); --i) {
    }
  }
  moveTo(position);
}

Recordset::Position Recordset::startOf(const Variant& start) const {
  if (start.isEmpty()) return position_;
  if (start.isNumber()) {
    const double number = toDouble(start);
    if (number == kFromCurrent) return position_;
    if (number == kFromFirst) return first();
    if (number == kFromLast) return last();
  }
  return placeOfBookmark(start);
}

Variant Recordset::bookmarkOf(std::size_t slot) const {
  return source_->generation() * kSlotsPerGeneration + static_cast<double>(slot);
}

Recordset::Position Recordset::placeOfBookmark(const Variant& bookmark) const {
  const auto* number = bookmark.as<double>();
  if (number == nullptr) raise(kBadArgument);
  const double slot = *number - source_->generation() * kSlotsPerGeneration;
  if (!(slot >= 0 && slot < static_cast<double>(source_->slots())) || std::floor(slot) != slot)
    raise(kBadArgument);
  const auto at = static_cast<std::size_t>(slot);
  if (source_->isHole(at)) raise(kNoCurrentRow);
  const auto place = shown_->view.placeOf(at);
  if (!place) raise(kNoCurrentRow);
  return {At::Row, *place};
}

Variant Recordset::Bookmark() const {
  const auto place = currentPlace();
  if (pending_ && pending_->adding) raise(kNoCurrentRow);
  return bookmarkOf(slotAt(place));
}

void Recordset::Bookmark(const Variant& bookmark) {
  saveFirst();
  moveTo(placeOfBookmark(bookmark));
}

std::int32_t Recordset::AbsolutePosition() const {
  requireRows();
  if (pending_ && pending_->adding) return kPositionUnknown;
  if (position_.at == At::Bof) return isEmpty() ? kPositionUnknown : kPositionBof;
  if (position_.at == At::Eof) return isEmpty() ? kPositionUnknown : kPositionEof;
  if (isHoleAt(position_.place)) return kPositionUnknown;
  std::size_t before = position_.place;
  if (source_->holes() > 0) {
    before = 0;
    for (std::size_t p = 0; p < position_.place; ++p)
      if (!isHoleAt(p)) ++before;
  }
  return static_cast<std::int32_t>(before) + 1;
}

void Recordset::AbsolutePosition(std::int32_t position) {
  saveFirst();
  if (position < 1 || position > RecordCount()) raise(kBadArgument);
  Position at{At::Row, static_cast<std::size_t>(position) - 1};
  if (source_->holes() > 0) {
    at = first();
    for (std::int32_t i = 1; i < position; ++i) stepForward(at);
  }
  moveTo(at);
}

// ---- reading ----

bool Recordset::readRow(std::size_t place, std::size_t& row) {
  if (!shown_->window.has(*source_, place)) {
    row_ = kNoRow;
    shown_->window.load(*source_, shown_->view, place);
  }
  row = shown_->window.rowAt(place);
  return !block().missing(row);
}

std::size_t Recordset::rowAt(std::size_t place) {
  std::size_t row = 0;
  if (!readRow(place, row)) raise(kRowDeleted);
  return row;
}

Variant Recordset::fieldValue(std::size_t column) {
  requireData();
  const auto type = source_->columns()[column].type;
  if (pending_) {
    if (const auto& assigned = pending_->values[column]) return shownValue(*assigned, type);
    if (pending_->adding) return Null;
    return shownValue(pending_->original, 0, column, type);
  }
  const auto row = currentRow();
  return shownValue(block(), row, column, type);
}

bool Recordset::fieldIsNull(std::size_t column) {
  requireData();
  if (pending_) return fieldValue(column).isNull();
  return block().cell(currentRow(), column).kind == engine::Cell::Kind::Null;
}

std::string_view Recordset::fieldText(std::size_t column) {
  requireData();
  if (!pending_) {
    const auto& cell = block().cell(currentRow(), column);
    if (cell.kind == engine::Cell::Kind::Text) return block().text(cell);
  }
  scratch_ = joinText(fieldValue(column));
  return scratch_;
}

Variant Recordset::originalValue(std::size_t column) {
  requireData();
  const auto type = source_->columns()[column].type;
  if (!pending_) return fieldValue(column);
  if (pending_->adding) return Null;
  return shownValue(pending_->original, 0, column, type);
}

// ---- writing ----

void Recordset::beginEdit() {
  const auto place = currentPlace();
  const auto row = rowAt(place);
  auto pending = std::make_unique<Pending>();
  pending->values.resize(source_->columns().size());
  pending->original.reset(source_->columns().size());
  pending->original.addRow(block(), row);
  pending->row = source_->keyOf(slotAt(place));
  pending_ = std::move(pending);
}

void Recordset::assign(std::size_t column, const Variant& value) {
  requireData();
  if (!pending_) (void)currentPlace();
  requireWritable();
  const auto& columns = source_->columns();
  if (!columns[column].updatable) raise(kNotAvailable, columns[column].name);
  SqlValue stored = storedValue(value, columns[column].type, columns[column].size);
  if (!pending_) beginEdit();
  if (columns[column].storage >= 0)
    for (std::size_t i = 0; i < columns.size(); ++i)
      if (columns[i].storage == columns[column].storage) pending_->values[i].reset();
  pending_->values[column] = std::move(stored);
}

void Recordset::AddNew() {
  requireWritable();
  if (!source_->canAdd()) raise(kNotAvailable);
  saveFirst();
  auto pending = std::make_unique<Pending>();
  pending->adding = true;
  pending->values = source_->beginAdd();
  pending->left = position_;
  pending_ = std::move(pending);
}

void Recordset::Update() {
  requireOpen();
  if (!pending_) return;
  requireData();
  if (pending_->adding) {
    shown_->view.add(source_->add(pending_->values));
    moveTo({At::Row, places() - 1});
  } else {
    source_->update(pending_->row, pending_->values, pending_->original);
  }
  pending_.reset();
}

void Recordset::CancelUpdate() {
  requireOpen();
  if (!pending_) return;
  if (pending_->adding) moveTo(pending_->left);
  pending_.reset();
}

void Recordset::Delete() {
  requireWritable();
  if (!source_->canDelete()) raise(kNotAvailable);
  if (pending_ && pending_->adding) raise(kNotAllowed);
  source_->remove(slotAt(currentPlace()));
  row_ = kNoRow;
  pending_.reset();
}

void Recordset::DeleteAll() {
  requireWritable();
  if (!source_->canDelete()) raise(kNotAvailable);
  if (pending_ && pending_->adding) raise(kNotAllowed);
  std::vector<std::size_t> slots;
  slots.reserve(places());
  for (std::size_t place = 0; place < places(); ++place)
    if (!isHoleAt(place)) slots.push_back(slotAt(place));
  source_->remove(slots);
  row_ = kNoRow;
  pending_.reset();
  moveTo({At::Eof, 0});
}

void Recordset::Requery() {
  saveFirst();
  auto before = source_->members();
  source_->requery();
  try {
    takeRows();
  } catch (...) {
    source_->goBackTo(std::move(before));
    throw;
  }
}

// ---- whole sets ----

void Recordset::Find(const std::string& Criteria, std::int32_t SkipRows, std::int32_t Direction,
                     const Variant& Start) {
  requireData();
  if ((Direction != kForward && Direction != kBackward) || SkipRows < 0) raise(kBadArgument);
  const Comparison comparison = parseComparison(Criteria, source_->columns());
  saveFirst();
  Position position = startOf(Start);
  const bool forward = Direction == kForward;
  const auto step = [&] { return forward ? stepForward(position) : stepBackward(position); };
  // From before the first row, in the direction of the search, and from a hole: the next row there
  // is.
  const bool before = forward ? position.at == At::Bof : position.at == At::Eof;
  bool onRow = position.at == At::Row && !isHoleAt(position.place);
  if (!onRow && (before || position.at == At::Row)) onRow = step();
  for (std::int32_t i = 0; i < SkipRows && onRow; ++i) onRow = step();
  const auto found = [&] {
    std::size_t row = 0;  // which may be one that somebody has deleted
    return readRow(position.place, row) && holds(comparison, block(), row, source_->columns());
  };
  while (onRow && !found()) onRow = step();
  if (!onRow) position = forward ? Position{At::Eof, 0} : Position{At::Bof, 0};
  moveTo(position);
}

std::vector<std::vector<Variant>> Recordset::GetRows(std::int32_t Rows, const Variant& Start,
                                                     const std::vector<std::string>& Fields) {
  requireData();
  if (Rows < kRestOfRows) raise(kBadArgument);
  std::vector<std::size_t> wanted;
  const auto& columns = source_->columns();
  for (const auto& name : Fields) {
    const auto at = std::find_if(columns.begin(), columns.end(), [&](const SourceColumn& c) {
      return foldKey(c.name) == foldKey(name);
    });
    if (at == columns.end()) raise(kNoSuchItem, name);
    wanted.push_back(static_cast<std::size_t>(at - columns.begin()));
  }
  if (Fields.empty())
    for (std::size_t i = 0; i < columns.size(); ++i) wanted.push_back(i);
  saveFirst();
  Position position = startOf(Start);
  if (position.at != At::Row) raise(kNoCurrentRow);
  std::vector<std::vector<Variant>> out(wanted.size());
  bool onRow = !isHoleAt(position.place) || stepForward(position);
  for (std::int32_t i = 0; onRow && (Rows == kRestOfRows || i < Rows); ++i) {
    const auto row = rowAt(position.place);
    for (std::size_t f = 0; f < wanted.size(); ++f)
      out[f].push_back(shownValue(block(), row, wanted[f], columns[wanted[f]].type));
    onRow = stepForward(position);
  }
  moveTo(position);
  return out;
}

Ref<Recordset> Recordset::Clone() {
  requireRows();
  auto clone = std::make_shared<Recordset>(Private{});
  clone->LockType(lockType_);
  clone->attach(source_);
  return clone;
}

void Recordset::readMany() noexcept { shown_->window.readMany(); }

const std::string& Recordset::Filter() const noexcept { return shown_->view.filter(); }
const std::string& Recordset::Sort() const noexcept { return shown_->view.sort(); }

void Recordset::Filter(const std::string& criteria) {
  requireData();
  const std::string_view text = trimmed(criteria);
  const bool none = text.empty() || text == std::to_string(kFilterNone);
  if (!none) (void)parseCriteria(criteria, source_->columns());
  saveFirst();
  show(none ? std::string() : criteria, shown_->view.sort());
}

void Recordset::Sort(const std::string& columns) {
  requireData();
  const bool none = trimmed(columns).empty();
  if (!none) (void)parseSort(columns, source_->columns());
  saveFirst();
  show(shown_->view.filter(), none ? std::string() : columns);
}

void Recordset::show(const std::string& filter, const std::string& sort) {
  RowWindow another;
  RowWindow& window = shown_->view.isPlain() ? shown_->window : another;
  row_ = kNoRow;
  RowView view(*source_, window, filter, sort);
  if (!shown_->view.isPlain() || !view.isPlain()) shown_->window.forget();
  shown_->view = std::move(view);
  moveTo(first());
}

void Recordset::arrange(const std::string& column, const std::vector<std::string>& values) {
  saveFirst();
  RowWindow window;
  source_->arrange(slotsInOrderOf(*source_, window, column, values));
  takeRows();
}

}  // namespace kv
