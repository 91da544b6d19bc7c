#include "kvdata/recordset/recordset.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>

#include "common/convert.h"
#include "common/error.h"
#include "common/text.h"
#include "common/text_key.h"
#include "kvdata/recordset/criteria.h"
#include "kvdata/recordset/keyset_source.h"
#include "kvdata/recordset/local_source.h"
#include "kvdata/recordset/snapshot_source.h"
#include "kvdata/recordset/value.h"

namespace kv {

namespace {

constexpr std::size_t kFirstReadAhead = 8;
constexpr std::size_t kMostReadAhead = 128;
constexpr double kSlotsPerGeneration = 4294967296.0;  // bookmarks: generation * 2^32 + slot

}  // namespace

// Every field asks these two; here, where the compiler sees what they need.
inline bool Recordset::isHoleAt(std::size_t place) const { return source_->isHole(slotAt(place)); }
inline std::size_t Recordset::currentRow() {
  if (row_ == kNoRow || blockStamp_ != source_->stamp()) row_ = rowAt(currentPlace());
  return row_;
}

// ---- making, opening, closing ----

struct Recordset::Pending {
  bool adding = false;
  RowEdit values;
  engine::RowBlock original;  // the row as read for this edit; empty when adding
  Position left;              // where an addition began
};

Recordset::Recordset(Private) : fields_(*this), block_(std::make_unique<engine::RowBlock>()) {}
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
  open_ = true;
  cursorType_ = source_->keyed() ? kKeyset : kStatic;
  if (source_->takeHead(*block_)) blockStamp_ = source_->stamp();
  moveTo(first());
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
  view_.reset();
  block_->reset(0);
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

void Recordset::requireWritable() const {
  requireOpen();
  if (lockType_ == kReadOnly) raise(kNotAvailable);
}

// ---- places and holes ----

std::size_t Recordset::places() const { return view_ ? view_->size() : source_->slots(); }

std::size_t Recordset::slotAt(std::size_t place) const { return view_ ? (*view_)[place] : place; }

std::size_t Recordset::currentPlace() const {
  requireOpen();
  if (position_.at != At::Row || isHoleAt(position_.place)) raise(kNoCurrentRow);
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
  requireOpen();
  if (pending_ && pending_->adding) return false;
  return position_.at == At::Eof || (position_.at == At::Bof && isEmpty());
}

bool Recordset::Bof() const {
  requireOpen();
  if (pending_ && pending_->adding) return false;
  return position_.at == At::Bof || (position_.at == At::Eof && isEmpty());
}

std::int32_t Recordset::RecordCount() const {
  requireOpen();
  if (!view_) return static_cast<std::int32_t>(source_->slots() - source_->holes());
  std::int32_t count = 0;
  for (const auto slot : *view_)
    if (!source_->isHole(slot)) ++count;
  return count;
}

// ---- moves ----

void Recordset::MoveFirst() {
  requireOpen();
  saveFirst();
  if (isEmpty()) raise(kNoCurrentRow);
  moveTo(first());
}

void Recordset::MoveLast() {
  requireOpen();
  saveFirst();
  if (isEmpty()) raise(kNoCurrentRow);
  moveTo(last());
}

void Recordset::MoveNext() {
  requireOpen();
  if (pending_) saveFirst();
  if (position_.at == At::Eof || (position_.at == At::Bof && isEmpty())) raise(kNoCurrentRow);
  stepForward(position_);
  row_ = kNoRow;
}

void Recordset::MovePrevious() {
  requireOpen();
  saveFirst();
  if (position_.at == At::Bof || (position_.at == At::Eof && isEmpty())) raise(kNoCurrentRow);
  stepBackward(position_);
  row_ = kNoRow;
}

void Recordset::Move(std::int32_t NumRecords, const Variant& Start) {
  requireOpen();
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
  auto place = static_cast<std::size_t>(slot);
  if (source_->isHole(place)) raise(kNoCurrentRow);
  if (view_) {
    const auto at = std::find(view_->begin(), view_->end(), place);
    if (at == view_->end()) raise(kNoCurrentRow);
    place = static_cast<std::size_t>(at - view_->begin());
  }
  return {At::Row, place};
}

Variant Recordset::Bookmark() const {
  const auto place = currentPlace();
  if (pending_ && pending_->adding) raise(kNoCurrentRow);
  return bookmarkOf(slotAt(place));
}

void Recordset::Bookmark(const Variant& bookmark) {
  requireOpen();
  saveFirst();
  moveTo(placeOfBookmark(bookmark));
}

std::int32_t Recordset::AbsolutePosition() const {
  requireOpen();
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
  requireOpen();
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

void Recordset::loadBlock(std::size_t place) {
  const auto stamp = source_->stamp();
  const bool fresh = blockStamp_ == stamp;
  std::size_t from = place;
  if (fresh && place == blockFirst_ + block_->rows()) {
    readAhead_ = std::clamp(readAhead_ * 4, kFirstReadAhead, kMostReadAhead);
  } else if (fresh && place + 1 == blockFirst_) {
    readAhead_ = std::clamp(readAhead_ * 4, kFirstReadAhead, kMostReadAhead);
    from = place + 1 - std::min(readAhead_, place + 1);
  } else {
    readAhead_ = 1;
  }
  const auto to = std::min(std::max(place + 1, from + readAhead_), places());
  std::vector<std::size_t> slots;
  slots.reserve(to - from);
  for (auto p = from; p < to; ++p) slots.push_back(slotAt(p));
  blockStamp_ = 0;  // nothing, should the reading fail
  row_ = kNoRow;
  source_->read(slots, *block_);
  blockFirst_ = from;
  blockStamp_ = stamp;
}

bool Recordset::readRow(std::size_t place, std::size_t& row) {
  if (blockStamp_ != source_->stamp() || place < blockFirst_ ||
      place >= blockFirst_ + block_->rows())
    loadBlock(place);
  row = place - blockFirst_;
  return !block_->missing(row);
}

std::size_t Recordset::rowAt(std::size_t place) {
  std::size_t row = 0;
  if (!readRow(place, row)) raise(kRowDeleted);
  return row;
}

Variant Recordset::fieldValue(std::size_t column) {
  requireOpen();
  const auto type = source_->columns()[column].type;
  if (pending_) {
    if (const auto& assigned = pending_->values[column]) return shownValue(*assigned, type);
    if (pending_->adding) return Null;
    return shownValue(pending_->original, 0, column, type);
  }
  return shownValue(*block_, currentRow(), column, type);
}

bool Recordset::fieldIsNull(std::size_t column) {
  requireOpen();
  if (pending_) return fieldValue(column).isNull();
  return block_->cell(currentRow(), column).kind == engine::Cell::Kind::Null;
}

std::string_view Recordset::fieldText(std::size_t column) {
  requireOpen();
  if (!pending_) {
    const auto& cell = block_->cell(currentRow(), column);
    if (cell.kind == engine::Cell::Kind::Text) return block_->text(cell);
  }
  scratch_ = joinText(fieldValue(column));
  return scratch_;
}

Variant Recordset::originalValue(std::size_t column) {
  requireOpen();
  const auto type = source_->columns()[column].type;
  if (!pending_) return fieldValue(column);
  if (pending_->adding) return Null;
  return shownValue(pending_->original, 0, column, type);
}

// ---- writing ----

void Recordset::beginEdit() {
  const auto row = rowAt(currentPlace());
  auto pending = std::make_unique<Pending>();
  pending->values.resize(source_->columns().size());
  pending->original.reset(source_->columns().size());
  pending->original.addRow(*block_, row);
  pending_ = std::move(pending);
}

void Recordset::assign(std::size_t column, const Variant& value) {
  requireOpen();
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
  if (pending_->adding) {
    const auto slot = source_->add(pending_->values);
    if (view_) view_->push_back(slot);
    moveTo({At::Row, places() - 1});
  } else {
    source_->update(slotAt(position_.place), pending_->values, pending_->original);
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
  requireOpen();
  saveFirst();
  source_->requery();
  view_.reset();
  block_->reset(0);
  blockFirst_ = 0;
  blockStamp_ = 0;
  if (source_->takeHead(*block_)) blockStamp_ = source_->stamp();
  rebuildView();
  moveTo(first());
}

// ---- whole sets ----

bool Recordset::holds(const Comparison& comparison, std::size_t place) {
  std::size_t row = 0;
  if (!readRow(place, row)) return false;  // somebody deleted it
  const auto& cell = block_->cell(row, comparison.column());
  if (cell.kind == engine::Cell::Kind::Text && comparison.isText())
    return comparison.holdsText(block_->text(cell));
  return comparison.holds(
      shownValue(*block_, row, comparison.column(), source_->columns()[comparison.column()].type));
}

void Recordset::Find(const std::string& Criteria, std::int32_t SkipRows, std::int32_t Direction,
                     const Variant& Start) {
  requireOpen();
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
  while (onRow && !holds(comparison, position.place)) onRow = step();
  if (!onRow) position = forward ? Position{At::Eof, 0} : Position{At::Bof, 0};
  moveTo(position);
}

std::vector<std::vector<Variant>> Recordset::GetRows(std::int32_t Rows, const Variant& Start,
                                                     const std::vector<std::string>& Fields) {
  requireOpen();
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
      out[f].push_back(shownValue(*block_, row, wanted[f], columns[wanted[f]].type));
    onRow = stepForward(position);
  }
  moveTo(position);
  return out;
}

Ref<Recordset> Recordset::Clone() {
  requireOpen();
  auto clone = std::make_shared<Recordset>(Private{});
  clone->LockType(lockType_);
  clone->attach(source_);
  return clone;
}

void Recordset::Filter(const std::string& criteria) {
  requireOpen();
  if (!trimmed(criteria).empty()) (void)parseCriteria(criteria, source_->columns());
  saveFirst();
  filter_ = trimmed(criteria).empty() ? std::string() : criteria;
  rebuildView();
  moveTo(first());
}

void Recordset::Sort(const std::string& columns) {
  requireOpen();
  if (!trimmed(columns).empty()) (void)parseSort(columns, source_->columns());
  saveFirst();
  sort_ = trimmed(columns).empty() ? std::string() : columns;
  rebuildView();
  moveTo(first());
}

void Recordset::arrange(const std::string& column, const std::vector<std::string>& values) {
  requireOpen();
  std::unordered_map<std::string, std::size_t> ranks;
  for (const auto& value : values) ranks.emplace(foldKey(value), ranks.size());
  const auto& columns = source_->columns();
  const auto place = static_cast<std::size_t>(
      std::find_if(columns.begin(), columns.end(),
                   [&](const SourceColumn& c) { return equalNoCase(c.name, column); }) -
      columns.begin());
  if (place == columns.size()) raise(kNoSuchItem, column);
  std::vector<std::pair<std::size_t, std::size_t>> order;  // rank and slot
  for (std::size_t slot = 0; slot < source_->slots(); ++slot) {
    std::size_t row = 0;
    std::size_t rank = ranks.size();
    if (readRow(slot, row)) {
      const auto& cell = block_->cell(row, place);
      if (cell.kind == engine::Cell::Kind::Text) {
        const auto known = ranks.find(foldKey(block_->text(cell)));
        if (known != ranks.end()) rank = known->second;
      }
    }
    order.emplace_back(rank, slot);
  }
  std::sort(order.begin(), order.end());
  std::vector<std::size_t> slots;
  slots.reserve(order.size());
  for (const auto& [rank, slot] : order) slots.push_back(slot);
  source_->arrange(slots);
  blockStamp_ = 0;
  moveTo(first());
}

bool Recordset::holds(const Criteria& criteria, std::size_t place) {
  switch (criteria.kind) {
    case Criteria::Kind::Comparison: return holds(criteria.comparison[0], place);
    case Criteria::Kind::And:
      return std::all_of(criteria.parts.begin(), criteria.parts.end(),
                         [&](const auto& part) { return holds(part, place); });
    case Criteria::Kind::Or:
      return std::any_of(criteria.parts.begin(), criteria.parts.end(),
                         [&](const auto& part) { return holds(part, place); });
  }
  return false;
}

void Recordset::rebuildView() {
  view_.reset();
  // Places mean other rows now, so the block is of no use.
  blockStamp_ = 0;
  if (filter_.empty() && sort_.empty()) return;
  const auto& columns = source_->columns();
  std::optional<Criteria> criteria;
  if (!filter_.empty()) criteria = parseCriteria(filter_, columns);
  std::vector<SortColumn> order;
  if (!sort_.empty()) order = parseSort(sort_, columns);

  struct Key {
    bool null = true;
    double number = 0;
    std::string text;
  };
  std::vector<std::size_t> shown;
  std::vector<std::vector<Key>> keys;
  for (std::size_t slot = 0; slot < source_->slots(); ++slot) {
    std::size_t row = 0;
    if (source_->isHole(slot) || !readRow(slot, row)) continue;
    if (criteria && !holds(*criteria, slot)) continue;
    shown.push_back(slot);
    if (order.empty()) continue;
    auto& own = keys.emplace_back();
    for (const auto& column : order) {
      const Variant value = shownValue(*block_, row, column.column, columns[column.column].type);
      Key& key = own.emplace_back();
      key.null = value.isNull();
      if (key.null) continue;
      if (value.isText())
        key.text = orderKey(*value.as<std::string>());
      else
        key.number = toDouble(value);
    }
  }
  if (!order.empty()) {
    std::vector<std::size_t> places(shown.size());
    for (std::size_t i = 0; i < places.size(); ++i) places[i] = i;
    std::stable_sort(places.begin(), places.end(), [&](std::size_t a, std::size_t b) {
      for (std::size_t c = 0; c < order.size(); ++c) {
        const Key& left = order[c].descending ? keys[b][c] : keys[a][c];
        const Key& right = order[c].descending ? keys[a][c] : keys[b][c];
        if (left.null != right.null) return left.null;  // Null sorts first
        if (left.number != right.number) return left.number < right.number;
        if (const int text = left.text.compare(right.text); text != 0) return text < 0;
      }
      return false;
    });
    std::vector<std::size_t> sorted;
    sorted.reserve(shown.size());
    for (const auto place : places) sorted.push_back(shown[place]);
    shown = std::move(sorted);
  }
  view_ = std::move(shown);
  blockStamp_ = 0;
}

}  // namespace kv
