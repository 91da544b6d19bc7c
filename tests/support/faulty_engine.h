// SPDX-License-Identifier: Apache-2.0
// An engine that does what another one does, until it is told to fail: a full disk, a lost
// connection.
#pragma once

#include <memory>
#include <string>

#include "common/error.h"
#include "engine/engine.h"

namespace kv::test {

// What shall fail, and how often it has been passed so far.
struct Faults {
  int failWriteAfter = -1;   // this many writing statements still succeed; -1: all
  int failCommitAfter = -1;  // the same for commits
  int failReadAfter = -1;    // the same for statements that read
};

class FaultyStatement final : public engine::Statement {
 public:
  FaultyStatement(std::unique_ptr<engine::Statement> inner, std::shared_ptr<Faults> faults,
                  bool writes)
      : inner_(std::move(inner)), faults_(std::move(faults)), writes_(writes) {}
  void bind(int n, const SqlValue& v) override { inner_->bind(n, v); }
  void bindCell(int n, const engine::RowBlock& b, std::size_t r, std::size_t c) override {
    inner_->bindCell(n, b, r, c);
  }
  void bindKeys(int n, const engine::KeyList& k) override { inner_->bindKeys(n, k); }
  std::int64_t run() override {
    check();
    return inner_->run();
  }
  std::size_t fetch(engine::RowBlock& b, std::span<const ColumnType> t,
                    std::vector<std::int64_t>& k, std::size_t per, std::size_t most) override {
    checkRead();
    return inner_->fetch(b, t, k, per, most);
  }
  void fetchKeys(std::vector<std::int64_t>& k, std::size_t per) override {
    check();
    checkRead();
    inner_->fetchKeys(k, per);
  }
  void reset() override { inner_->reset(); }

 private:
  void check() {
    if (!writes_ || faults_->failWriteAfter < 0) return;
    if (faults_->failWriteAfter-- == 0)
      throw Error(kEngineFailure, "kvData", "The disk is full. (test)");
  }
  void checkRead() {
    if (writes_ || faults_->failReadAfter < 0) return;
    if (faults_->failReadAfter-- == 0)
      throw Error(kEngineFailure, "kvData", "The server does not answer. (test)");
  }
  std::unique_ptr<engine::Statement> inner_;
  std::shared_ptr<Faults> faults_;
  bool writes_;
};

class FaultyEngine final : public engine::Engine {
 public:
  FaultyEngine(std::unique_ptr<engine::Engine> inner, std::shared_ptr<Faults> faults)
      : inner_(std::move(inner)), faults_(std::move(faults)) {}
  std::string_view dialect() const override { return inner_->dialect(); }
  std::unique_ptr<engine::Statement> prepare(const std::string& sql) override {
    return std::make_unique<FaultyStatement>(inner_->prepare(sql), faults_,
                                             !sql.starts_with("SELECT"));
  }
  void execute(const std::string& sql) override { inner_->execute(sql); }
  std::vector<TableInfo> catalog() override { return inner_->catalog(); }
  void watchTables(bool on) noexcept override { inner_->watchTables(on); }
  bool watchesTables() const noexcept override { return inner_->watchesTables(); }
  bool metChangedTables() const noexcept override { return inner_->metChangedTables(); }
  bool tablesMayDiffer() override { return inner_->tablesMayDiffer(); }
  void begin(engine::Access a) override { inner_->begin(a); }
  void commit() override {
    if (faults_->failCommitAfter >= 0 && faults_->failCommitAfter-- == 0)
      throw Error(kEngineFailure, "kvData", "The disk is full. (test)");
    inner_->commit();
  }
  void rollback() noexcept override { inner_->rollback(); }
  bool inTransaction() const override { return inner_->inTransaction(); }
  void savepoint(int m) override { inner_->savepoint(m); }
  void release(int m) override { inner_->release(m); }
  void rollbackTo(int m) override { inner_->rollbackTo(m); }
  std::int64_t reserveCounter(const TableInfo& t, std::int64_t n) override {
    return inner_->reserveCounter(t, n);
  }
  std::int64_t counterReached(const TableInfo& t) override { return inner_->counterReached(t); }
  std::uint64_t roundTrips() const noexcept override { return inner_->roundTrips(); }
  void countAbove(const TableInfo& t) override { inner_->countAbove(t); }
  void guardStatements(bool on) override { inner_->guardStatements(on); }
  std::int64_t dataVersion() override { return inner_->dataVersion(); }
  void markAsRegister() override { inner_->markAsRegister(); }
  bool readOnly() const override { return inner_->readOnly(); }
  void interrupt() noexcept override { inner_->interrupt(); }
  void setTimeLimit(std::chrono::milliseconds limit) override { inner_->setTimeLimit(limit); }

 private:
  std::unique_ptr<engine::Engine> inner_;
  std::shared_ptr<Faults> faults_;
};

}  // namespace kv::test
