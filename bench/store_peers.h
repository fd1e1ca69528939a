// Key-value libraries behind one face: Put, Get, Delete of a record under a number, in a file of the scratch folder. Each runs
// without waiting for the disk, as the record store does, and with 128 MB of cache where it is told how much.

#pragma once

#include <cstring>

#include "bench/bench_support.h"

#ifdef ZP_HAVE_SQLITE
#include <sqlite3.h>

namespace bench {

class Sqlite {
 public:
  explicit Sqlite(Scratch const & scratch)
  {
    sqlite3_open(scratch.File("sqlite").c_str(), &m_pDb);
    sqlite3_exec(m_pDb,
                 "PRAGMA synchronous=OFF; PRAGMA journal_mode=OFF; PRAGMA cache_size=-131072;"
                 "CREATE TABLE r(id INTEGER PRIMARY KEY, b BLOB); BEGIN",
                 nullptr, nullptr, nullptr);
    m_pPut = Prepare("INSERT OR REPLACE INTO r VALUES(?1, ?2)");
    m_pGet = Prepare("SELECT b FROM r WHERE id=?1");
    m_pDelete = Prepare("DELETE FROM r WHERE id=?1");
  }
  ~Sqlite()
  {
    sqlite3_exec(m_pDb, "COMMIT", nullptr, nullptr, nullptr);
    for (sqlite3_stmt * const statement : {m_pPut, m_pGet, m_pDelete}) sqlite3_finalize(statement);
    sqlite3_close(m_pDb);
  }
  void Put(int id, char const * data, unsigned int length)
  {
    sqlite3_bind_int(m_pPut, 1, id);
    sqlite3_bind_blob(m_pPut, 2, data, static_cast<int>(length), SQLITE_STATIC);
    Step(m_pPut);
  }
  unsigned int Get(int id, char * buffer, unsigned int)
  {
    sqlite3_bind_int(m_pGet, 1, id);
    unsigned int length = 0;
    if (sqlite3_step(m_pGet) == SQLITE_ROW) {
      length = static_cast<unsigned int>(sqlite3_column_bytes(m_pGet, 0));
      std::memcpy(buffer, sqlite3_column_blob(m_pGet, 0), length);
    }
    sqlite3_reset(m_pGet);
    return length;
  }
  void Delete(int id)
  {
    sqlite3_bind_int(m_pDelete, 1, id);
    Step(m_pDelete);
  }

 private:
  sqlite3_stmt * Prepare(char const * text)
  {
    sqlite3_stmt * statement = nullptr;
    sqlite3_prepare_v2(m_pDb, text, -1, &statement, nullptr);
    return statement;
  }
  static void Step(sqlite3_stmt * statement)
  {
    sqlite3_step(statement);
    sqlite3_reset(statement);
  }

  sqlite3 * m_pDb = nullptr;
  sqlite3_stmt * m_pPut;
  sqlite3_stmt * m_pGet;
  sqlite3_stmt * m_pDelete;
};

}  // namespace bench
#endif

#ifdef ZP_HAVE_LMDB
#include <lmdb.h>

namespace bench {

class Lmdb {
 public:
  explicit Lmdb(Scratch const & scratch)
  {
    mdb_env_create(&m_pEnv);
    mdb_env_set_mapsize(m_pEnv, size_t{1} << 30);
    mdb_env_open(m_pEnv, scratch.File("lmdb").c_str(), MDB_NOSUBDIR | MDB_NOSYNC, 0666);
    mdb_txn_begin(m_pEnv, nullptr, 0, &m_pTxn);
    mdb_dbi_open(m_pTxn, nullptr, MDB_INTEGERKEY, &m_Dbi);
  }
  ~Lmdb()
  {
    mdb_txn_commit(m_pTxn);
    mdb_env_close(m_pEnv);
  }
  void Put(int id, char const * data, unsigned int length)
  {
    MDB_val key{sizeof id, &id};
    MDB_val value{length, const_cast<char *>(data)};
    mdb_put(m_pTxn, m_Dbi, &key, &value, 0);
  }
  unsigned int Get(int id, char * buffer, unsigned int)
  {
    MDB_val key{sizeof id, &id};
    MDB_val value;
    if (mdb_get(m_pTxn, m_Dbi, &key, &value) != 0) return 0;
    std::memcpy(buffer, value.mv_data, value.mv_size);
    return static_cast<unsigned int>(value.mv_size);
  }
  void Delete(int id)
  {
    MDB_val key{sizeof id, &id};
    mdb_del(m_pTxn, m_Dbi, &key, nullptr);
  }

 private:
  MDB_env * m_pEnv = nullptr;
  MDB_txn * m_pTxn = nullptr;
  MDB_dbi m_Dbi = 0;
};

}  // namespace bench
#endif

#ifdef ZP_HAVE_TKRZW
#include <tkrzw_dbm_hash.h>

namespace bench {

class Tkrzw {
 public:
  explicit Tkrzw(Scratch const & scratch) { m_Dbm.Open(scratch.File("tkrzw.tkh"), true).OrDie(); }
  ~Tkrzw() { m_Dbm.Close().OrDie(); }
  void Put(int id, char const * data, unsigned int length) { m_Dbm.Set(Key(id), std::string_view(data, length)).OrDie(); }
  unsigned int Get(int id, char * buffer, unsigned int)
  {
    if (!m_Dbm.Get(Key(id), &m_Value).IsOK()) return 0;
    std::memcpy(buffer, m_Value.data(), m_Value.size());
    return static_cast<unsigned int>(m_Value.size());
  }
  void Delete(int id) { m_Dbm.Remove(Key(id)); }

 private:
  static std::string_view Key(int const & id) { return {reinterpret_cast<char const *>(&id), sizeof id}; }

  tkrzw::HashDBM m_Dbm;
  std::string m_Value;
};

}  // namespace bench
#endif

#ifdef ZP_HAVE_GDBM
#include <gdbm.h>

namespace bench {

class Gdbm {
 public:
  explicit Gdbm(Scratch const & scratch) : m_pFile(gdbm_open(scratch.File("gdbm").c_str(), 0, GDBM_NEWDB, 0666, nullptr)) {}
  ~Gdbm() { gdbm_close(m_pFile); }
  void Put(int id, char const * data, unsigned int length)
  {
    gdbm_store(m_pFile, Key(id), {const_cast<char *>(data), static_cast<int>(length)}, GDBM_REPLACE);
  }
  unsigned int Get(int id, char * buffer, unsigned int)
  {
    datum const value = gdbm_fetch(m_pFile, Key(id));
    if (value.dptr == nullptr) return 0;
    std::memcpy(buffer, value.dptr, static_cast<size_t>(value.dsize));
    free(value.dptr);
    return static_cast<unsigned int>(value.dsize);
  }
  void Delete(int id) { gdbm_delete(m_pFile, Key(id)); }

 private:
  static datum Key(int & id) { return {reinterpret_cast<char *>(&id), sizeof id}; }

  GDBM_FILE m_pFile;
};

}  // namespace bench
#endif

#ifdef ZP_HAVE_BDB
#include <db.h>

namespace bench {

class BerkeleyDb {
 public:
  explicit BerkeleyDb(Scratch const & scratch)
  {
    db_create(&m_pDb, nullptr, 0);
    m_pDb->set_cachesize(m_pDb, 0, 128 << 20, 1);
    m_pDb->open(m_pDb, nullptr, scratch.File("bdb").c_str(), nullptr, DB_BTREE, DB_CREATE, 0666);
  }
  ~BerkeleyDb() { m_pDb->close(m_pDb, DB_NOSYNC); }
  void Put(int id, char const * data, unsigned int length)
  {
    DBT key = Dbt(&id, sizeof id);
    DBT value = Dbt(const_cast<char *>(data), length);
    m_pDb->put(m_pDb, nullptr, &key, &value, 0);
  }
  unsigned int Get(int id, char * buffer, unsigned int)
  {
    DBT key = Dbt(&id, sizeof id);
    DBT value = Dbt(nullptr, 0);
    if (m_pDb->get(m_pDb, nullptr, &key, &value, 0) != 0) return 0;
    std::memcpy(buffer, value.data, value.size);
    return value.size;
  }
  void Delete(int id)
  {
    DBT key = Dbt(&id, sizeof id);
    m_pDb->del(m_pDb, nullptr, &key, 0);
  }

 private:
  static DBT Dbt(void * data, unsigned int size)
  {
    DBT dbt{};
    dbt.data = data;
    dbt.size = size;
    return dbt;
  }

  DB * m_pDb = nullptr;
};

}  // namespace bench
#endif
