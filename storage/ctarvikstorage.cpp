// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ctarvikstorage.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QLocale>
#include <QMutexLocker>
#include <QRegularExpression>
#include <QResource>
#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QVariant>

#include <QTemporaryFile>

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <limits>

#include "phonesimsecurityinterface.h"

static void initStorageResource()
{
    Q_INIT_RESOURCE(res_storage);
}

namespace Dravo {

QMutex localMutex;

const QString CTarvikStorage::softwareVersion = QStringLiteral("1.0.5");
const QString CTarvikStorage::driverName = QStringLiteral("QSQLITE");
const QString CTarvikStorage::fileName = QStringLiteral("tarvikdb.sqlite");
const QString CTarvikStorage::templateResource = QStringLiteral(":/res_storage/tarvikdb.sqlite");

namespace {

const char* const kSelectColumns =
    "select tid, tguid, tfrom, tto, tutcdatetime, ttz, ttitle, tnote, tlatitude, tlongitude, "
    "tscreenname, taddress, ttype, ttypedesc, timage, tpriority, tcolor, treg, tcountry, "
    "tcarrier, tversion, tflag from %1";

const char* const kInsert =
    "insert into %1 (tguid, tfrom, tto, tutcdatetime, ttz, ttitle, tnote, tlatitude, tlongitude, "
    "tscreenname, taddress, ttype, ttypedesc, timage, tpriority, tcolor, treg, tcountry, tcarrier, "
    "tversion, tflag) values (:tguid, :tfrom, :tto, :tutcdatetime, :ttz, :ttitle, :tnote, "
    ":tlatitude, :tlongitude, :tscreenname, :taddress, :ttype, :ttypedesc, :timage, :tpriority, "
    ":tcolor, :treg, :tcountry, :tcarrier, :tversion, :tflag)";

const char* const kUpdate =
    "update %1 set tguid=:tguid, tfrom=:tfrom, tto=:tto, tutcdatetime=:tutcdatetime, ttz=:ttz, "
    "ttitle=:ttitle, tnote=:tnote, tlatitude=:tlatitude, tlongitude=:tlongitude, "
    "tscreenname=:tscreenname, taddress=:taddress, ttype=:ttype, ttypedesc=:ttypedesc, "
    "timage=:timage, tpriority=:tpriority, tcolor=:tcolor, treg=:treg, tcountry=:tcountry, "
    "tcarrier=:tcarrier, tversion=:tversion, tflag=:tflag where tid=:tid";

QString sql(const char* text, const QString& table)
{
    return QString::fromLatin1(text).arg(table);
}

// Binds a message to the 21 parameters of the insert statement and runs it on the
// native handle. Qt's own binding builds a placeholder name per value, which costs
// more than SQLite's insert; a batch of new messages therefore goes this way.
bool insertNative(sqlite3* db, sqlite3_stmt* stmt, const CTarvik& t, int& tid, QString& error)
{
    auto text = [stmt](int index, const QString& value) {
        if (value.isNull()) {
            sqlite3_bind_null(stmt, index);
        } else {
            sqlite3_bind_text16(stmt, index, value.utf16(), int(value.size() * sizeof(char16_t)),
                                SQLITE_TRANSIENT);
        }
    };
    const QDateTime dateTime = t.dateTime();
    text(1, t.guid());
    text(2, t.from());
    text(3, t.to());
    sqlite3_bind_int64(stmt, 4, dateTime.isValid() ? uint(dateTime.toSecsSinceEpoch()) : 0u);
    sqlite3_bind_int(stmt, 5, t.tz());
    text(6, t.title());
    text(7, t.note());
    sqlite3_bind_double(stmt, 8, t.latitude());
    sqlite3_bind_double(stmt, 9, t.longitude());
    text(10, t.screenname());
    text(11, t.address());
    text(12, t.type());
    text(13, t.typedesc());
    text(14, t.image());
    sqlite3_bind_int(stmt, 15, t.priority());
    text(16, t.color());
    text(17, t.reg());
    sqlite3_bind_int(stmt, 18, t.country());
    text(19, t.carrier());
    text(20, t.version());
    sqlite3_bind_int(stmt, 21, t.flag());
    const int rc = sqlite3_step(stmt);
    sqlite3_reset(stmt);
    sqlite3_clear_bindings(stmt);
    if (rc != SQLITE_DONE) {
        error = QString::fromUtf8(sqlite3_errmsg(db));
        return false;
    }
    tid = int(sqlite3_last_insert_rowid(db));
    return true;
}

QString driverText(const QSqlQuery& query)
{
    return query.lastError().text();
}

// Numeric columns: text that is not a number is logged and the field keeps its default.
bool toIntColumn(const QVariant& value, int& out, const char* message)
{
    bool ok = false;
    const int converted = value.toInt(&ok);
    if (!ok) {
        qDebug().noquote() << QString::fromLatin1(message) + value.toString();
        return false;
    }
    out = converted;
    return true;
}

// Coordinates are read as text and converted with the system locale, after every '.' has
// been turned into the locale's decimal point, so text written by another program in
// either form is understood. Values SQLite already holds as REAL are taken as they are.
bool toCoordinate(const QVariant& value, double& out)
{
    if (value.typeId() == QMetaType::Double) {
        out = value.toDouble();
        return true;
    }
    const QLocale locale;
    QString text = value.toString();
    text.replace(QLatin1Char('.'), locale.decimalPoint());
    bool ok = false;
    const double converted = locale.toDouble(text, &ok);
    if (ok) {
        out = converted;
    }
    return ok;
}

// ModemManager's first modem: GetManagedObjects returns a{oa{sa{sv}}}.
QString imeiFromModemManager()
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.ModemManager1"),
        QStringLiteral("/org/freedesktop/ModemManager1"),
        QStringLiteral("org.freedesktop.DBus.ObjectManager"), QStringLiteral("GetManagedObjects"));
    const QDBusMessage reply = QDBusConnection::systemBus().call(call, QDBus::Block, 3000);
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) {
        return QString();
    }
    const QDBusArgument arg = reply.arguments().at(0).value<QDBusArgument>();
    if (arg.currentSignature() != QLatin1String("a{oa{sa{sv}}}")) {
        return QString();
    }
    QString imei;
    arg.beginMap();
    while (!arg.atEnd() && imei.isEmpty()) {
        QDBusObjectPath path;
        arg.beginMapEntry();
        arg >> path;
        arg.beginMap();
        while (!arg.atEnd()) {
            QString interface;
            QVariantMap properties;
            arg.beginMapEntry();
            arg >> interface >> properties;
            arg.endMapEntry();
            if (imei.isEmpty() &&
                interface == QLatin1String("org.freedesktop.ModemManager1.Modem")) {
                imei = properties.value(QStringLiteral("EquipmentIdentifier")).toString();
            }
        }
        arg.endMap();
        arg.endMapEntry();
    }
    arg.endMap();
    return imei;
}

}  // namespace

CTarvikStorage::CUserData::~CUserData() = default;

QString CTarvikStorage::dataDirectory()
{
    return QDir::homePath() + QStringLiteral("/.tarvik/");
}

QString CTarvikStorage::databasePath()
{
    return dataDirectory() + fileName;
}

void CTarvikStorage::initResources()
{
    static const bool registered = [] {
        initStorageResource();
        return true;
    }();
    Q_UNUSED(registered);
}

CTarvikStorage::CTarvikStorage()
    : QObject(nullptr),
      m_strConnectionName(QStringLiteral("tarvikdb_default")),
      m_pDatabase(nullptr)
{
    qDebug().noquote() << "CTarvikStorage::CTarvikStorage default constructor m_strConnectionName ="
                       << m_strConnectionName;
    QMutexLocker locker(&localMutex);
    openDatabase();
}

CTarvikStorage::CTarvikStorage(const QString& connectionName, QObject* parent)
    : QObject(parent), m_strConnectionName(connectionName), m_pDatabase(nullptr)
{
    qDebug().noquote() << "CTarvikStorage::CTarvikStorage constructor m_strConnectionName ="
                       << m_strConnectionName;
    QMutexLocker locker(&localMutex);
    openDatabase();
}

CTarvikStorage::~CTarvikStorage()
{
    QMutexLocker locker(&localMutex);
    closeDatabase();
}

bool CTarvikStorage::isOpen() const
{
    return m_pDatabase && m_pDatabase->isOpen();
}

void CTarvikStorage::closeDatabase()
{
    if (m_pDatabase) {
        m_pDatabase->close();
        delete m_pDatabase;
        m_pDatabase = nullptr;
    }
    if (QSqlDatabase::contains(m_strConnectionName)) {
        QSqlDatabase::removeDatabase(m_strConnectionName);
    }
}

// Serialises the check, creation and replacement of the database file between processes
// (client, daemon, simulator). Without a writable directory there is nothing to lock and
// nothing to create either; the open then fails on its own terms.
class CTarvikStorage::CFileLock
{
public:
    CFileLock()
    {
        const QString dir = dataDirectory();
        QDir().mkpath(dir);
        const QByteArray path = QFile::encodeName(dir + QStringLiteral(".tarvikdb.lock"));
        m_iFd = ::open(path.constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
        if (m_iFd >= 0 && ::flock(m_iFd, LOCK_EX) != 0) {
            ::close(m_iFd);
            m_iFd = -1;
        }
    }
    ~CFileLock()
    {
        if (m_iFd >= 0) {
            ::flock(m_iFd, LOCK_UN);
            ::close(m_iFd);
        }
    }
    CFileLock(const CFileLock&) = delete;
    CFileLock& operator=(const CFileLock&) = delete;

private:
    int m_iFd;
};

void CTarvikStorage::openDatabase()
{
    Q_ASSERT_X(m_pDatabase == nullptr, "CTarvikStorage::openDatabase", "m_pDatabase == NULL");
    closeDatabase();
    CFileLock lock;
    openLocked();
}

void CTarvikStorage::openLocked()
{
    const QString path = databasePath();
    if (!QFile::exists(path)) {
        qDebug() << "CTarvikStorage::openDatabase creating database";
        if (!createDatabase()) {
            qWarning() << "CTarvikStorage::openDatabase failed to create database";
            return;
        }
    }

    {
        QSqlDatabase db = QSqlDatabase::addDatabase(driverName, m_strConnectionName);
        if (!db.isValid()) {
            db = QSqlDatabase();
            QSqlDatabase::removeDatabase(m_strConnectionName);
            qWarning() << "CTarvikStorage::openDatabase failed to allocate memory for database";
            return;
        }
        m_pDatabase = new QSqlDatabase(db);
    }
    m_pDatabase->setDatabaseName(path);
    m_pDatabase->setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=%1").arg(busyTimeoutMs));
    if (!m_pDatabase->open()) {
        qWarning().noquote() << "CTarvikStorage::openDatabase failed to open database: " +
                                    m_pDatabase->lastError().text();
        return;
    }

    bool versionDiffers = false;
    {
        QSqlQuery query(*m_pDatabase);
        if (!query.exec(QStringLiteral("select value from settings where name='version'"))) {
            qWarning().noquote()
                << "CTarvikStorage::openDatabase failed to execute select version query " +
                       driverText(query);
        } else if (!query.next()) {
            qWarning() << "CTarvikStorage::openDatabase failed to get version from query";
        } else {
            versionDiffers = query.value(0).toString() != softwareVersion;
        }
    }
    if (versionDiffers) {
        qDebug() << "CTarvikStorage::openDatabase: recreating DB since SW & DB versions are "
                    "not equal";
        if (!recreateLocked()) {
            qWarning() << "CTarvikStorage::openDatabase failed to recreate db";
        }
    }
}

bool CTarvikStorage::writeVersionAndImei(const QString& path)
{
    const QString name = m_strConnectionName + QStringLiteral("_new");
    bool ok = false;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(driverName, name);
        db.setDatabaseName(path);
        if (!db.open()) {
            qWarning().noquote() << "CTarvikStorage::openDatabase failed to open database: " +
                                        db.lastError().text();
        } else {
            qDebug() << "CTarvikStorage::openDatabase write SW version to a new DB after creating";
            QSqlQuery update(db);
            update.prepare(QStringLiteral("update settings set value=:value where name='version'"));
            update.bindValue(QStringLiteral(":value"), softwareVersion);
            ok = update.exec();
            if (!ok) {
                qWarning().noquote()
                    << "CTarvikStorage::openDatabase failed to exec update version query: " +
                           driverText(update);
            } else {
                storeImei(db);
            }
            update.finish();
        }
        db.close();
    }
    QSqlDatabase::removeDatabase(name);
    return ok;
}

void CTarvikStorage::storeImei(QSqlDatabase& db)
{
    qDebug() << "CTarvikStorage::openDatabase get IMEI started";
    int flags = 0;
    PhoneSimSecurityInterface sim(QStringLiteral("com.nokia.phone.SIM"),
                                  QStringLiteral("/com/nokia/phone/SIM/security"),
                                  QDBusConnection::systemBus());
    sim.setTimeout(3000);
    QString imei = sim.get_imei(flags);
    if (imei.isEmpty()) {
        // Today's phones and desktops have no SIM service; ModemManager knows the modem's IMEI.
        imei = imeiFromModemManager();
    }
    if (imei.isEmpty()) {
        qWarning() << "CTarvikStorage::openDatabase failed to get imei";
        return;
    }
    qDebug().noquote() << "CTarvikStorage::openDatabase get IMEI ended: " + imei;
    QSqlQuery query(db);
    query.prepare(QStringLiteral("update settings set value=:value where name='imei'"));
    query.bindValue(QStringLiteral(":value"), imei);
    if (!query.exec()) {
        qWarning().noquote() << "CTarvikStorage::openDatabase failed to exec update imei query: " +
                                    driverText(query);
    }
}

bool CTarvikStorage::createDatabase()
{
    return buildDatabase(false);
}

// The new database is made complete (template, version, IMEI) under a temporary name in
// the same directory and then moved into place in one step, so no process ever opens a
// half-made file. A fresh file is linked in only if no other process has made one
// meanwhile; a replacement is renamed over the old file.
bool CTarvikStorage::buildDatabase(bool replace)
{
    QResource resource(templateResource);
    Q_ASSERT_X(resource.isValid(), "CTarvikStorage::createDatabase", "valid");
    if (!resource.isValid()) {
        qWarning() << "CTarvikStorage::createDatabase() template resource is missing";
        return false;
    }
    const QString dir = dataDirectory();
    if (!QDir().exists(dir) && !QDir().mkpath(dir)) {
        qWarning() << "CTarvikStorage::createDatabase() failed to create db path";
        return false;
    }
    const QByteArray data = resource.uncompressedData();
    QTemporaryFile file(databasePath() + QStringLiteral(".new-XXXXXX"));
    if (!file.open()) {
        qWarning().noquote()
            << QStringLiteral(
                   "CTarvikStorage::createDatabase() failed to open file for writing: %1 %2")
                   .arg(file.error())
                   .arg(file.errorString());
        return false;
    }
    const qint64 written = file.write(data);
    const bool flushed = file.flush();
    if (written < data.size() || !flushed) {
        qWarning().noquote()
            << QStringLiteral("CTarvikStorage::createDatabase() failed to write to stream: %1 %2")
                   .arg(file.error())
                   .arg(file.errorString());
        return false;
    }
    file.close();
    if (!writeVersionAndImei(file.fileName())) {
        return false;
    }
    const QByteArray from = QFile::encodeName(file.fileName());
    const QByteArray to = QFile::encodeName(databasePath());
    if (replace) {
        if (::rename(from.constData(), to.constData()) != 0) {
            qWarning().noquote() << "CTarvikStorage::recreateDatabase failed to remove database " +
                                        databasePath() + QStringLiteral(": ") +
                                        QString::fromLocal8Bit(strerror(errno));
            return false;
        }
        return true;
    }
    if (::link(from.constData(), to.constData()) != 0 && errno != EEXIST) {
        qWarning().noquote() << "CTarvikStorage::createDatabase() failed to move the new database "
                                "into place: " +
                                    QString::fromLocal8Bit(strerror(errno));
        return false;
    }
    return true;
}

bool CTarvikStorage::recreateDatabase()
{
    closeDatabase();
    CFileLock lock;
    return recreateLocked();
}

bool CTarvikStorage::recreateLocked()
{
    closeDatabase();
    qDebug() << "CTarvikStorage::openDatabase creating database";
    if (!buildDatabase(true)) {
        return false;
    }
    openLocked();
    return isOpen();
}

bool CTarvikStorage::checkOpen(const char* operation) const
{
    if (!isOpen()) {
        qWarning().noquote()
            << QStringLiteral("CTarvikStorage::%1 db is not opened").arg(QLatin1String(operation));
        return false;
    }
    return true;
}

bool CTarvikStorage::checkFolder(int folder, const char* operation) const
{
    if (!isValidFolder(folder)) {
        qWarning().noquote() << QStringLiteral("CTarvikStorage::%1 invalid folder=%2")
                                    .arg(QLatin1String(operation))
                                    .arg(folder);
        return false;
    }
    return true;
}

namespace {

bool fitsInt(qint64 value)
{
    return value >= std::numeric_limits<int>::min() && value <= std::numeric_limits<int>::max();
}

// A row of a Qt SQL query.
class CQueryRow
{
public:
    explicit CQueryRow(const QSqlQuery& query) : m_query(query) {}
    QVariant value(int column) const { return m_query.value(column); }
    QString text(int column) const { return m_query.value(column).toString(); }
    bool integer(int column, qint64& out) const
    {
        const QVariant v = m_query.value(column);
        if (v.typeId() != QMetaType::LongLong) {
            return false;
        }
        out = v.toLongLong();
        return true;
    }
    bool real(int column, double& out) const
    {
        const QVariant v = m_query.value(column);
        if (v.typeId() != QMetaType::Double) {
            return false;
        }
        out = v.toDouble();
        return true;
    }

private:
    const QSqlQuery& m_query;
};

// A row of a native statement. value() builds the same QVariant the Qt SQLite driver
// would; text() and integer() skip the variant for the common cell types.
class CNativeRow
{
public:
    explicit CNativeRow(sqlite3_stmt* stmt) : m_pStmt(stmt) {}
    QVariant value(int column) const
    {
        switch (sqlite3_column_type(m_pStmt, column)) {
            case SQLITE_INTEGER:
                return QVariant(qlonglong(sqlite3_column_int64(m_pStmt, column)));
            case SQLITE_FLOAT:
                return QVariant(sqlite3_column_double(m_pStmt, column));
            case SQLITE_NULL:
                return QVariant(QMetaType::fromType<QString>());
            case SQLITE_BLOB:
                return QVariant(
                    QByteArray(static_cast<const char*>(sqlite3_column_blob(m_pStmt, column)),
                               sqlite3_column_bytes(m_pStmt, column)));
            default:
                return QVariant(rawText(column));
        }
    }
    QString text(int column) const
    {
        switch (sqlite3_column_type(m_pStmt, column)) {
            case SQLITE_TEXT:
                return rawText(column);
            case SQLITE_NULL:
                return QString();
            default:
                return value(column).toString();
        }
    }
    bool integer(int column, qint64& out) const
    {
        if (sqlite3_column_type(m_pStmt, column) != SQLITE_INTEGER) {
            return false;
        }
        out = sqlite3_column_int64(m_pStmt, column);
        return true;
    }
    bool real(int column, double& out) const
    {
        if (sqlite3_column_type(m_pStmt, column) != SQLITE_FLOAT) {
            return false;
        }
        out = sqlite3_column_double(m_pStmt, column);
        return true;
    }

private:
    // Text columns repeat from row to row (recipient, version, carrier, a frequent sender):
    // a value equal to the previous row's shares its string instead of allocating anew.
    QString rawText(int column) const
    {
        const auto* data = static_cast<const QChar*>(sqlite3_column_text16(m_pStmt, column));
        const qsizetype size = sqlite3_column_bytes16(m_pStmt, column) / qsizetype(sizeof(QChar));
        if (size == 0 || column >= kColumns) {
            return QString(data, size);
        }
        QString& last = m_lastText[column];
        if (last.size() != size || memcmp(last.constData(), data, size * sizeof(QChar)) != 0) {
            last = QString(data, size);
        }
        return last;
    }

    static const int kColumns = 22;
    mutable QString m_lastText[kColumns];
    sqlite3_stmt* m_pStmt;
};

// Numeric columns: text that is not a number is logged and the field keeps its default.
template <class Row>
bool intColumn(const Row& row, int column, int& out, const char* message)
{
    qint64 number = 0;
    if (row.integer(column, number) && fitsInt(number)) {
        out = int(number);
        return true;
    }
    return toIntColumn(row.value(column), out, message);
}

template <class Row>
bool coordinateColumn(const Row& row, int column, double& out, const char* message)
{
    if (row.real(column, out)) {
        return true;
    }
    const QVariant value = row.value(column);
    if (!toCoordinate(value, out)) {
        qDebug().noquote() << QString::fromLatin1(message) + value.toString();
        return false;
    }
    return true;
}

// Fills a message from the 22 columns of a row, in table order.
template <class Row>
bool fillTarvik(const Row& row, CTarvik& tarvik)
{
    int id = 0;
    qint64 number = 0;
    if (row.integer(0, number) && fitsInt(number)) {
        id = int(number);
    } else {
        bool ok = false;
        const QVariant tid = row.value(0);
        id = tid.toInt(&ok);
        if (!ok) {
            qWarning().noquote() << "CTarvikStorage::retrieveTarvikFromQuery invalid tid: " +
                                        tid.toString();
            return false;
        }
    }
    tarvik.setId(id);
    tarvik.setGuid(row.text(1));
    tarvik.setFrom(row.text(2));
    tarvik.setTo(row.text(3));

    if (row.integer(4, number) && number >= 0 && number <= std::numeric_limits<uint>::max()) {
        tarvik.setDateTime(QDateTime::fromSecsSinceEpoch(number, Qt::UTC));
    } else {
        bool ok = false;
        const QVariant seconds = row.value(4);
        const uint secs = seconds.toUInt(&ok);
        if (ok) {
            tarvik.setDateTime(QDateTime::fromSecsSinceEpoch(secs, Qt::UTC));
        } else {
            qDebug().noquote() << "CTarvikStorage::retrieveTarvikFromQuery invalid tutcdatetime: " +
                                      seconds.toString();
        }
    }
    int value = 0;
    if (intColumn(row, 5, value, "CTarvikStorage::retrieveTarvikFromQuery invalid ttz: ")) {
        tarvik.setTz(value);
    }
    tarvik.setTitle(row.text(6));
    tarvik.setNote(row.text(7));
    double coordinate = 0.0;
    if (coordinateColumn(row, 8, coordinate,
                         "CTarvikStorage::retrieveTarvikFromQuery invalid tlatitude: ")) {
        tarvik.setLatitude(coordinate);
    }
    if (coordinateColumn(row, 9, coordinate,
                         "CTarvikStorage::retrieveTarvikFromQuery invalid tlongitude: ")) {
        tarvik.setLongitude(coordinate);
    }
    tarvik.setScreenname(row.text(10));
    tarvik.setAddress(row.text(11));
    tarvik.setType(row.text(12));
    tarvik.setTypedesc(row.text(13));
    tarvik.setImage(row.text(14));
    if (intColumn(row, 15, value, "CTarvikStorage::retrieveTarvikFromQuery invalid tpriority: ")) {
        tarvik.setPriority(value);
    }
    QString color = row.text(16);
    if (!color.isEmpty()) {
        tarvik.setColor(color);
    }
    tarvik.setReg(row.text(17));
    if (intColumn(row, 18, value, "CTarvikStorage::retrieveTarvikFromQuery invalid tcountry: ")) {
        tarvik.setCountry(value);
    }
    tarvik.setCarrier(row.text(19));
    tarvik.setVersion(row.text(20));
    if (intColumn(row, 21, value, "CTarvikStorage::retrieveTarvikFromQuery invalid tflag: ")) {
        tarvik.setFlag(value);
    }
    return true;
}

}  // namespace

bool CTarvikStorage::retrieveTarvikFromQuery(const QSqlQuery& query, CTarvik& tarvik)
{
    return fillTarvik(CQueryRow(query), tarvik);
}

bool CTarvikStorage::retrieveTarvikFromStatement(sqlite3_stmt* stmt, CTarvik& tarvik)
{
    return fillTarvik(CNativeRow(stmt), tarvik);
}

sqlite3* CTarvikStorage::nativeHandle() const
{
    const QVariant native = m_pDatabase->driver()->handle();
    if (native.isValid() && qstrcmp(native.typeName(), "sqlite3*") == 0) {
        return *static_cast<sqlite3* const*>(native.constData());
    }
    return nullptr;
}

// Steps the statement natively: the Qt driver's per-cell variants and row cache cost more
// than SQLite's own work for a whole folder.
bool CTarvikStorage::retrieveTarviksFromQuery(const QString& table, int limit, int offset,
                                              QList<CTarvik>& tarviks)
{
    QMutexLocker locker(&localMutex);
    sqlite3* handle = nativeHandle();
    sqlite3_stmt* stmt = nullptr;
    // The row count first, so the list is allocated once rather than grown and moved.
    qint64 rows = 0;
    const QByteArray count = QStringLiteral("select count(*) from %1").arg(table).toUtf8();
    if (handle && sqlite3_prepare_v2(handle, count.constData(), -1, &stmt, nullptr) == SQLITE_OK &&
        sqlite3_step(stmt) == SQLITE_ROW) {
        rows = qMax<qint64>(0, sqlite3_column_int64(stmt, 0) - qMax(0, offset));
    }
    sqlite3_finalize(stmt);
    stmt = nullptr;
    const QByteArray text = (sql(kSelectColumns, table) +
                             QStringLiteral(" order by tutcdatetime desc limit ? offset ?"))
                                .toUtf8();
    int rc =
        handle ? sqlite3_prepare_v2(handle, text.constData(), -1, &stmt, nullptr) : SQLITE_MISUSE;
    if (rc == SQLITE_OK) {
        sqlite3_bind_int(stmt, 1, limit);
        sqlite3_bind_int(stmt, 2, offset);
        rc = sqlite3_step(stmt);
    }
    if (rc != SQLITE_ROW && rc != SQLITE_DONE) {
        qWarning().noquote()
            << "CTarvikStorage::retrieveTarviksFromQuery failed to execute query " +
                   (handle ? QString::fromUtf8(sqlite3_errmsg(handle))
                           : QStringLiteral("no native handle"));
        sqlite3_finalize(stmt);
        return false;
    }
    locker.unlock();
    if (limit >= 0) {
        rows = qMin<qint64>(rows, limit);
    }
    tarviks.reserve(tarviks.size() + qMin<qint64>(rows, 1000000));
    const CNativeRow row(stmt);
    for (; rc == SQLITE_ROW; rc = sqlite3_step(stmt)) {
        CTarvik tarvik;
        if (!fillTarvik(row, tarvik)) {
            qWarning() << "CTarvikStorage::retrieveTarviksFromQuery failed to retrieve tarvik";
            continue;
        }
        tarviks.append(std::move(tarvik));
    }
    if (rc != SQLITE_DONE) {
        qWarning().noquote() << "CTarvikStorage::retrieveTarviksFromQuery stopped reading: " +
                                    QString::fromUtf8(sqlite3_errmsg(handle));
    }
    sqlite3_finalize(stmt);
    return true;
}

bool CTarvikStorage::getTarvik(int tid, eFolderName folder, CTarvik& tarvik)
{
    qDebug("CTarvikStorage::getTarvik: started tid=%d folder=%d", tid, int(folder));
    if (!checkOpen("getTarvik") || !checkFolder(folder, "getTarvik")) {
        return false;
    }
    QMutexLocker locker(&localMutex);
    QSqlQuery query(*m_pDatabase);
    query.setForwardOnly(true);
    query.prepare(sql(kSelectColumns, tableName(folder)) + QStringLiteral(" where tid=?"));
    query.addBindValue(tid);
    if (!query.exec()) {
        qWarning().noquote() << QStringLiteral(
                                    "CTarvikStorage::getTarvik tid=%1 failed to execute query ")
                                        .arg(tid) +
                                    driverText(query);
        return false;
    }
    locker.unlock();
    if (!query.next()) {
        qWarning().noquote()
            << QStringLiteral("CTarvikStorage::getTarvik tid=%1 failed to get record from query")
                   .arg(tid);
        return false;
    }
    if (!retrieveTarvikFromQuery(query, tarvik)) {
        qWarning().noquote() << QStringLiteral(
                                    "CTarvikStorage::getTarvik tid=%1 failed to retrieve tarvik")
                                    .arg(tid);
        return false;
    }
    return true;
}

bool CTarvikStorage::getTarviks(eFolderName folder, QList<CTarvik>& tarviks, int limit, int offset)
{
    qDebug("CTarvikStorage::getTarviks: started folder=%d", int(folder));
    if (!checkOpen("getTarviks") || !checkFolder(folder, "getTarviks")) {
        return false;
    }
    return retrieveTarviksFromQuery(tableName(folder), limit, offset, tarviks);
}

bool CTarvikStorage::saveTarvik(const CTarvik& tarvik, eFolderName folder, int& tid)
{
    qDebug("CTarvikStorage::saveTarvik: started folder=%d", int(folder));
    tid = -1;
    if (!checkOpen("saveTarvik") || !checkFolder(folder, "saveTarvik")) {
        return false;
    }
    QMutexLocker locker(&localMutex);
    return saveTarvikLocked(tarvik, folder, tid);
}

bool CTarvikStorage::saveTarvikLocked(const CTarvik& tarvik, eFolderName folder, int& tid)
{
    tid = -1;
    const QString table = tableName(folder);
    const bool inserting = tarvik.id() == -1;
    QSqlQuery own(*m_pDatabase);
    QSqlQuery* query = &own;
    if (inserting) {
        own.prepare(sql(kInsert, table));
    } else {
        QSqlQuery select(*m_pDatabase);
        select.setForwardOnly(true);
        select.prepare(QStringLiteral("select tid from %1 where tid=?").arg(table));
        select.addBindValue(tarvik.id());
        if (!select.exec()) {
            qWarning().noquote()
                << QStringLiteral(
                       "CTarvikStorage::saveTarvik tid=%1 failed to execute select query ")
                           .arg(tarvik.id()) +
                       driverText(select);
            return false;
        }
        if (!select.next()) {
            qWarning().noquote()
                << QStringLiteral(
                       "CTarvikStorage::saveTarvik tid=%1 failed to get record from query")
                       .arg(tarvik.id());
            return false;
        }
        select.finish();
        own.prepare(sql(kUpdate, table));
    }
    // Placeholders in statement order: :tguid .. :tflag, then :tid for an update.
    const QDateTime dateTime = tarvik.dateTime();
    const uint seconds = dateTime.isValid() ? uint(dateTime.toSecsSinceEpoch()) : 0u;
    const QVariant values[] = {
        tarvik.guid(),      tarvik.from(),       tarvik.to(),       seconds,
        tarvik.tz(),        tarvik.title(),      tarvik.note(),     tarvik.latitude(),
        tarvik.longitude(), tarvik.screenname(), tarvik.address(),  tarvik.type(),
        tarvik.typedesc(),  tarvik.image(),      tarvik.priority(), tarvik.color(),
        tarvik.reg(),       tarvik.country(),    tarvik.carrier(),  tarvik.version(),
        tarvik.flag()};
    int position = 0;
    for (const QVariant& value : values) {
        query->bindValue(position++, value);
    }
    if (!inserting) {
        query->bindValue(position, tarvik.id());
    }
    if (!query->exec()) {
        qWarning().noquote() << "CTarvikStorage::saveTarvik failed to exec query: " +
                                    driverText(*query);
        return false;
    }
    if (!inserting) {
        tid = tarvik.id();
        return true;
    }
    bool ok = false;
    const int newId = query->lastInsertId().toInt(&ok);
    if (!ok) {
        qWarning() << "CTarvikStorage::saveTarvik failed to get last inserted id";
        return false;
    }
    tid = newId;
    return true;
}

bool CTarvikStorage::saveTarviks(const QList<CTarvik>& tarviks, eFolderName folder,
                                 QList<int>& tids)
{
    qDebug("CTarvikStorage::saveTarviks: started folder=%d", int(folder));
    if (!checkOpen("saveTarviks") || !checkFolder(folder, "saveTarviks")) {
        return false;
    }
    if (tarviks.isEmpty()) {
        qWarning() << "CTarvikStorage::saveTarviks the list is empty - there is nothing to save";
        return false;
    }
    // The whole list goes into one transaction: one journal sync instead of one per
    // message. Each item still succeeds or fails by itself, since a failed statement
    // leaves the rest of the transaction intact. Should SQLite roll the transaction
    // back on its own (disk full, I/O error), the items are saved again one by one.
    QMutexLocker locker(&localMutex);
    sqlite3* handle = nativeHandle();
    const bool batched = handle && m_pDatabase->transaction();
    bool result = true;
    bool transactionLost = false;
    QList<int> saved;
    if (batched) {
        sqlite3_stmt* insert = nullptr;
        const QByteArray insertSql = sql(kInsert, tableName(folder)).toUtf8();
        if (sqlite3_prepare_v2(handle, insertSql.constData(), -1, &insert, nullptr) != SQLITE_OK) {
            insert = nullptr;
        }
        for (int i = 0; i < tarviks.size(); ++i) {
            qDebug("CTarvikStorage::saveTarvik: started folder=%d", int(folder));
            int tid = -1;
            const CTarvik& tarvik = tarviks.at(i);
            bool ok = false;
            if (insert && tarvik.id() == -1) {
                QString error;
                ok = insertNative(handle, insert, tarvik, tid, error);
                if (!ok) {
                    qWarning().noquote()
                        << "CTarvikStorage::saveTarvik failed to exec query: " + error;
                }
            } else {
                ok = saveTarvikLocked(tarvik, folder, tid);
            }
            if (ok) {
                saved.append(tid);
                continue;
            }
            if (sqlite3_get_autocommit(handle)) {
                transactionLost = true;
                break;
            }
            qWarning().noquote()
                << QStringLiteral("CTarvikStorage::saveTarviks i=%1 failed to save tarvik").arg(i);
            result = false;
        }
        sqlite3_finalize(insert);
        if (!transactionLost && !m_pDatabase->commit()) {
            qWarning().noquote() << "CTarvikStorage::saveTarviks failed to commit: " +
                                        m_pDatabase->lastError().text();
            m_pDatabase->rollback();
            transactionLost = true;
        }
        if (!transactionLost) {
            tids += saved;
            return result;
        }
        if (!sqlite3_get_autocommit(handle)) {
            m_pDatabase->rollback();
        }
        qWarning() << "CTarvikStorage::saveTarviks transaction rolled back, saving one by one";
    }
    locker.unlock();

    result = true;
    for (int i = 0; i < tarviks.size(); ++i) {
        int tid = -1;
        if (saveTarvik(tarviks.at(i), folder, tid)) {
            tids.append(tid);
        } else {
            qWarning().noquote()
                << QStringLiteral("CTarvikStorage::saveTarviks i=%1 failed to save tarvik").arg(i);
            result = false;
        }
    }
    return result;
}

bool CTarvikStorage::removeTarvik(int tid, eFolderName folder)
{
    qDebug("CTarvikStorage::removeTarvik: started tid=%d folder=%d", tid, int(folder));
    if (!checkOpen("removeTarvik") || !checkFolder(folder, "removeTarvik")) {
        return false;
    }
    QMutexLocker locker(&localMutex);
    return removeTarvikLocked(tid, folder);
}

bool CTarvikStorage::removeTarvikLocked(int tid, eFolderName folder)
{
    const QString table = tableName(folder);
    QSqlQuery select(*m_pDatabase);
    select.setForwardOnly(true);
    select.prepare(QStringLiteral("select tid from %1 where tid=?").arg(table));
    select.addBindValue(tid);
    if (!select.exec()) {
        qWarning().noquote()
            << QStringLiteral("CTarvikStorage::removeTarvik tid=%1 failed to execute select query ")
                       .arg(tid) +
                   driverText(select);
        return false;
    }
    if (!select.next()) {
        qWarning().noquote()
            << QStringLiteral("CTarvikStorage::removeTarvik tid=%1 failed to get record from query")
                   .arg(tid);
        return false;
    }
    select.finish();
    QSqlQuery remove(*m_pDatabase);
    remove.prepare(QStringLiteral("delete from %1 where tid=?").arg(table));
    remove.addBindValue(tid);
    if (!remove.exec()) {
        qWarning().noquote()
            << QStringLiteral("CTarvikStorage::removeTarvik tid=%1 failed to execute delete query ")
                       .arg(tid) +
                   driverText(remove);
        return false;
    }
    return true;
}

bool CTarvikStorage::removeTarviks(const QList<int>& tids, eFolderName folder)
{
    qDebug("CTarvikStorage::removeTarviks: started folder=%d", int(folder));
    if (!checkOpen("removeTarviks") || !checkFolder(folder, "removeTarviks")) {
        return false;
    }
    if (tids.isEmpty()) {
        qWarning() << "CTarvikStorage::removeTarviks the tids list is empty";
        return false;
    }
    // One transaction for the list: one journal sync, and the daemon's removal of many sent
    // messages is seen by the client all at once.
    QMutexLocker locker(&localMutex);
    const bool batched = m_pDatabase->transaction();
    bool result = true;
    for (int i = 0; i < tids.size(); ++i) {
        if (!removeTarvikLocked(tids.at(i), folder)) {
            qWarning().noquote()
                << QStringLiteral(
                       "CTarvikStorage::removeTarviks i=%1 tid=%2 failed to remove tarvik")
                       .arg(i)
                       .arg(tids.at(i));
            result = false;
        }
    }
    if (batched && !m_pDatabase->commit()) {
        qWarning().noquote() << "CTarvikStorage::removeTarviks failed to commit: " +
                                    m_pDatabase->lastError().text();
        m_pDatabase->rollback();
        result = false;
    }
    return result;
}

bool CTarvikStorage::removeAllTarviks(eFolderName folder)
{
    qDebug("CTarvikStorage::removeAllTarviks: started folder=%d", int(folder));
    if (!checkOpen("removeAllTarviks") || !checkFolder(folder, "removeAllTarviks")) {
        return false;
    }
    QMutexLocker locker(&localMutex);
    QSqlQuery query(*m_pDatabase);
    if (!query.exec(QStringLiteral("delete from %1").arg(tableName(folder)))) {
        qWarning().noquote()
            << QStringLiteral(
                   "CTarvikStorage::removeAllTarviks folder=%1 failed to execute delete query ")
                       .arg(int(folder)) +
                   driverText(query);
        return false;
    }
    return true;
}

bool CTarvikStorage::getSettings(CTSettings& settings)
{
    qDebug() << "CTarvikStorage::getSettings started";
    if (!checkOpen("getSettings")) {
        return false;
    }
    QMutexLocker locker(&localMutex);
    QSqlQuery query(*m_pDatabase);
    query.setForwardOnly(true);
    if (!query.exec(QStringLiteral("select name, value from settings"))) {
        qWarning().noquote() << "CTarvikStorage::getSettings failed to execute query " +
                                    driverText(query);
        return false;
    }
    locker.unlock();
    while (query.next()) {
        const QString name = query.value(0).toString();
        const QString value = query.value(1).toString();
        bool ok = true;
        if (name == QLatin1String("imei")) {
            settings.setImei(value);
        } else if (name == QLatin1String("screenname")) {
            settings.setScreenname(value);
        } else if (name == QLatin1String("mynumber")) {
            settings.setMynumber(value);
        } else if (name == QLatin1String("version")) {
            settings.setVersion(value);
        } else if (name == QLatin1String("imsi")) {
            settings.setImsi(value);
        } else if (name == QLatin1String("regflag")) {
            const int regflag = value.toInt(&ok, 10);
            if (!ok) {
                qWarning() << "CTarvikStorage::getSettings failed to convert regflag to int";
                return false;
            }
            settings.setRegflag(regflag);
        } else if (name == QLatin1String("pollinginterval")) {
            const int interval = value.toInt(&ok, 10);
            if (!ok) {
                qWarning()
                    << "CTarvikStorage::getSettings failed to convert pollinginterval to int";
                return false;
            }
            settings.setPollinginterval(interval);
        }
    }
    return true;
}

bool CTarvikStorage::saveSettings(const CTSettings& settings, uint mask)
{
    qDebug() << "CTarvikStorage::saveSettings started";
    if (!checkOpen("saveSettings")) {
        return false;
    }
    struct Step
    {
        uint bit;
        const char* key;
        QVariant value;
    };
    const Step steps[] = {
        {CTSettings::eMaskScreenname, "screenname", settings.screenname()},
        {CTSettings::eMaskMynumber, "mynumber", settings.mynumber()},
        {CTSettings::eMaskImsi, "imsi", settings.imsi()},
        {CTSettings::eMaskRegflag, "regflag", settings.regflag()},
        {CTSettings::eMaskPollinginterval, "pollinginterval", settings.pollinginterval()},
    };
    QMutexLocker locker(&localMutex);
    for (const Step& step : steps) {
        if (!(mask & step.bit)) {
            continue;
        }
        const QString key = QLatin1String(step.key);
        QSqlQuery query(*m_pDatabase);
        query.prepare(QStringLiteral("update settings set value=:value where name='%1'").arg(key));
        query.bindValue(QStringLiteral(":value"), step.value);
        if (!query.exec()) {
            qWarning().noquote()
                << QStringLiteral("CTarvikStorage::saveSettings failed to exec update %1 query: ")
                           .arg(key) +
                       driverText(query);
            return false;
        }
    }
    return true;
}

bool CTarvikStorage::getLocationRequest(CLocationRequest& request)
{
    qDebug() << "CTarvikStorage::getLocationRequest started";
    if (!checkOpen("getLocationRequest")) {
        return false;
    }
    QMutexLocker locker(&localMutex);
    QSqlQuery query(*m_pDatabase);
    query.setForwardOnly(true);
    if (!query.exec(QStringLiteral("select name, value from settings"))) {
        qWarning().noquote()
            << "CTarvikStorage::getLocationRequest failed to execute select query from settings " +
                   driverText(query);
        return false;
    }
    locker.unlock();
    while (query.next()) {
        const QString name = query.value(0).toString();
        bool ok = true;
        if (name == QLatin1String("providelocation")) {
            const int value = query.value(1).toString().toInt(&ok, 10);
            if (!ok) {
                qWarning() << "CTarvikStorage::getLocationRequest failed to convert "
                              "providelocation to int";
                return false;
            }
            request.setProvidelocation(value);
        } else if (name == QLatin1String("providelocationperiod")) {
            const int value = query.value(1).toString().toInt(&ok, 10);
            if (!ok) {
                qWarning() << "CTarvikStorage::getLocationRequest failed to convert "
                              "providelocationperiod to int";
                return false;
            }
            request.setProvidelocationperiod(value);
        }
    }
    query.finish();

    locker.relock();
    QSqlQuery schedule(*m_pDatabase);
    schedule.setForwardOnly(true);
    if (!schedule.exec(QStringLiteral("select day, timeon, timeoff from locationupdateschedule"))) {
        qWarning().noquote() << "CTarvikStorage::getLocationRequest failed to execute select query "
                                "from locationupdateschedule " +
                                    driverText(schedule);
        return false;
    }
    locker.unlock();
    QList<CLocationRequest::CScheduleEntry> entries;
    while (schedule.next()) {
        bool ok = false;
        const int day = schedule.value(0).toInt(&ok);
        if (!ok) {
            qWarning() << "CTarvikStorage::getLocationRequest failed to convert day to int";
            return false;
        }
        entries.append({day, schedule.value(1).toString(), schedule.value(2).toString()});
    }
    request.setSchedule(entries);
    return true;
}

bool CTarvikStorage::saveLocationRequest(const CLocationRequest& request, uint mask)
{
    qDebug() << "CTarvikStorage::saveLocationRequest started";
    if (!checkOpen("saveLocationRequest")) {
        return false;
    }
    QMutexLocker locker(&localMutex);
    if (mask & CLocationRequest::eMaskProvideLocation) {
        QSqlQuery query(*m_pDatabase);
        query.prepare(
            QStringLiteral("update settings set value=:value where name='providelocation'"));
        query.bindValue(QStringLiteral(":value"), request.providelocation());
        if (!query.exec()) {
            qWarning().noquote() << "CTarvikStorage::saveLocationRequest failed to exec update "
                                    "providelocation query: " +
                                        driverText(query);
            return false;
        }
    }
    if (mask & CLocationRequest::eMaskProvideLocationPeriod) {
        QSqlQuery query(*m_pDatabase);
        query.prepare(
            QStringLiteral("update settings set value=:value where name='providelocationperiod'"));
        query.bindValue(QStringLiteral(":value"), request.providelocationperiod());
        if (!query.exec()) {
            qWarning().noquote() << "CTarvikStorage::saveLocationRequest failed to exec update "
                                    "providelocationperiod query: " +
                                        driverText(query);
            return false;
        }
    }
    if (mask & CLocationRequest::eMaskSchedule) {
        QSqlQuery remove(*m_pDatabase);
        if (!remove.exec(QStringLiteral("delete from locationupdateschedule"))) {
            qWarning().noquote() << "CTarvikStorage::saveLocationRequest failed to execute delete "
                                    "query on locationupdateschedule " +
                                        driverText(remove);
            return false;
        }
        for (const CLocationRequest::CScheduleEntry& entry : request.schedule()) {
            QSqlQuery insert(*m_pDatabase);
            insert.prepare(
                QStringLiteral("insert into locationupdateschedule (day, timeon, timeoff) values "
                               "(:day, :timeon, :timeoff)"));
            insert.bindValue(QStringLiteral(":day"), entry.day);
            insert.bindValue(QStringLiteral(":timeon"), entry.timeon);
            insert.bindValue(QStringLiteral(":timeoff"), entry.timeoff);
            if (!insert.exec()) {
                qWarning().noquote() << "CTarvikStorage::saveLocationRequest failed to exec insert "
                                        "into locationupdateschedule query: " +
                                            driverText(insert);
                return false;
            }
        }
    }
    return true;
}

void CTarvikStorage::getTarvikRequest(int tid, eFolderName folderName, CUserData* userData)
{
    CTarvik tarvik;
    const bool result = getTarvik(tid, folderName, tarvik);
    Q_EMIT signalTarvikGotten(result, tarvik, uint(folderName), userData);
}

void CTarvikStorage::saveTarvikRequest(CTarvik tarvik, eFolderName folderName, CUserData* userData)
{
    int tid = -1;
    const bool result = saveTarvik(tarvik, folderName, tid);
    Q_EMIT signalTarvikSaved(result, tid, uint(folderName), userData);
}

void CTarvikStorage::removeTarvikRequest(int tid, eFolderName folderName, CUserData* userData)
{
    const bool result = removeTarvik(tid, folderName);
    Q_EMIT signalTarvikRemoved(result, tid, uint(folderName), userData);
}

void CTarvikStorage::getTarviksRequest(eFolderName folderName, int limit, int offset,
                                       CUserData* userData)
{
    QList<CTarvik> tarviks;
    const bool result = getTarviks(folderName, tarviks, limit, offset);
    Q_EMIT signalTarviksGotten(result, tarviks, uint(folderName), userData);
}

void CTarvikStorage::saveTarviksRequest(QList<CTarvik> tarviks, eFolderName folderName,
                                        CUserData* userData)
{
    QList<int> tids;
    const bool result = saveTarviks(tarviks, folderName, tids);
    Q_EMIT signalTarviksSaved(result, tids, uint(folderName), userData);
}

void CTarvikStorage::removeTarviksRequest(QList<int> tids, eFolderName folderName,
                                          CUserData* userData)
{
    const bool result = removeTarviks(tids, folderName);
    Q_EMIT signalTarviksRemoved(result, tids, uint(folderName), userData);
}

void CTarvikStorage::removeAllTarviksRequest(eFolderName folderName, CUserData* userData)
{
    const bool result = removeAllTarviks(folderName);
    Q_EMIT signalAllTarviksRemoved(result, uint(folderName), userData);
}

void CTarvikStorage::getSettingsRequest(CUserData* userData)
{
    CTSettings settings;
    const bool result = getSettings(settings);
    Q_EMIT signalSettingsGotten(result, settings, userData);
}

void CTarvikStorage::saveSettingsRequest(CTSettings settings, uint mask, CUserData* userData)
{
    const bool result = saveSettings(settings, mask);
    Q_EMIT signalSettingsSaved(result, mask, userData);
}

void CTarvikStorage::getLocationRequestRequest(CUserData* userData)
{
    CLocationRequest request;
    const bool result = getLocationRequest(request);
    Q_EMIT signalLocationRequestGotten(result, request, userData);
}

void CTarvikStorage::saveLocationRequestRequest(CLocationRequest locationrequest, uint mask,
                                                CUserData* userData)
{
    const bool result = saveLocationRequest(locationrequest, mask);
    Q_EMIT signalLocationRequestSaved(result, mask, userData);
}

}  // namespace Dravo
