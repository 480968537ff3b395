#include "Database.h"

#include <sqlite3.h>

#include <cmath>

namespace logtool {

namespace {

const int WAIT_MS = 60000;  // for another program that writes to the file

}  // namespace

Database::~Database() { ::sqlite3_close(mpDatabase); }

void Database::open(const std::string& nPath, Mode nMode) {
  check(::sqlite3_open_v2(nPath.c_str(), &mpDatabase, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr));
  if (!isRight()) return;
  ::sqlite3_busy_timeout(mpDatabase, WAIT_MS);
  if (nMode == FRESH) run("PRAGMA journal_mode=OFF; PRAGMA synchronous=OFF;");
  run("BEGIN IMMEDIATE");
}

void Database::run(const char* npCommands) {
  if (isRight()) check(::sqlite3_exec(mpDatabase, npCommands, nullptr, nullptr, nullptr));
}

bool Database::close() {
  if (!mIsGivenUp) run("COMMIT");
  if (mpDatabase != nullptr && ::sqlite3_get_autocommit(mpDatabase) == 0) {
    ::sqlite3_exec(mpDatabase, "ROLLBACK", nullptr, nullptr, nullptr);
  }
  ::sqlite3_close(mpDatabase);
  mpDatabase = nullptr;
  return isRight();
}

int64_t Database::lastId() const { return ::sqlite3_last_insert_rowid(mpDatabase); }

void Database::check(int nResult) {
  const bool lIsRight = nResult == SQLITE_OK || nResult == SQLITE_ROW || nResult == SQLITE_DONE;
  if (!lIsRight && isRight()) mError = mpDatabase != nullptr ? ::sqlite3_errmsg(mpDatabase) : ::sqlite3_errstr(nResult);
}

Statement::Statement(Database& nDatabase, const char* npCommand) : mDatabase(nDatabase) {
  if (mDatabase.isRight()) {
    mDatabase.check(::sqlite3_prepare_v2(mDatabase.mpDatabase, npCommand, -1, &mpStatement, nullptr));
  }
}

Statement::~Statement() { ::sqlite3_finalize(mpStatement); }

Statement& Statement::number(int64_t nValue) {
  bound(::sqlite3_bind_int64(mpStatement, mNext, nValue));
  return *this;
}

Statement& Statement::real(double nValue) {
  bound(std::isnan(nValue) ? ::sqlite3_bind_null(mpStatement, mNext)
                           : ::sqlite3_bind_double(mpStatement, mNext, nValue));
  return *this;
}

Statement& Statement::text(std::string_view nValue) {
  bound(nValue.empty() ? ::sqlite3_bind_null(mpStatement, mNext)
                       : ::sqlite3_bind_text(mpStatement, mNext, nValue.data(), static_cast<int>(nValue.size()),
                                             SQLITE_TRANSIENT));
  return *this;
}

Statement& Statement::blob(std::string_view nValue) {
  bound(::sqlite3_bind_blob(mpStatement, mNext, nValue.data(), static_cast<int>(nValue.size()), SQLITE_TRANSIENT));
  return *this;
}

void Statement::bound(int nResult) {
  ++mNext;
  if (mDatabase.isRight()) mDatabase.check(nResult);
}

bool Statement::run() {
  mNext = 1;
  if (!mDatabase.isRight()) return false;
  const int lResult = ::sqlite3_step(mpStatement);
  mDatabase.check(lResult);
  if (lResult != SQLITE_ROW) ::sqlite3_reset(mpStatement);
  return lResult == SQLITE_ROW;
}

int64_t Statement::result(int nColumn) const { return ::sqlite3_column_int64(mpStatement, nColumn); }

}  // namespace logtool
