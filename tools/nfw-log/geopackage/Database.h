#pragma once

#include <cstdint>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace logtool {

/// A file of SQLite. After the first failure nothing more is done, and the reason stays.
class Database {
 public:
  enum Mode {
    FRESH,    ///< a file of its own that is thrown away when anything fails: written without a journal
    EXISTING  ///< holds what must stay: all is done in one transaction, which a crash takes back
  };

  Database() = default;
  ~Database();
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;

  void open(const std::string& nPath, Mode nMode);
  /// Any number of commands without a result.
  void run(const char* npCommands);
  /// Completes the transaction, or takes it back where anything failed or it was given up. False when it failed.
  bool close();
  void giveUp() { mIsGivenUp = true; }

  bool isRight() const { return mError.empty(); }
  const std::string& getError() const { return mError; }
  int64_t lastId() const;

 private:
  friend class Statement;
  void check(int nResult);

  sqlite3* mpDatabase = nullptr;
  std::string mError;
  bool mIsGivenUp = false;
};

/// A command with values, run many times. Values are bound one behind the other; NAN and an empty text are NULL.
class Statement {
 public:
  /// @param nDatabase not owned, outlives the statement
  Statement(Database& nDatabase, const char* npCommand);
  ~Statement();
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;

  Statement& number(int64_t nValue);
  Statement& real(double nValue);
  Statement& text(std::string_view nValue);
  Statement& blob(std::string_view nValue);

  /// Runs the command with what was bound. True when it gave a row, the first.
  bool run();
  int64_t result(int nColumn) const;  ///< of the row

 private:
  void bound(int nResult);

  Database& mDatabase;
  sqlite3_stmt* mpStatement = nullptr;
  int mNext = 1;
};

}  // namespace logtool
