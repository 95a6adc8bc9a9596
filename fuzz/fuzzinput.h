// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QCoreApplication>
#include <QString>
#include <QtGlobal>

#include <cstdint>
#include <cstring>
#include <type_traits>

namespace Dravo::Fuzz {

// Takes values one after the other from the fuzzer's bytes; past the end everything is zero
// or empty, so every input is usable.
class CFuzzInput
{
public:
    CFuzzInput(const uint8_t* pData, size_t iSize) : m_pData(pData), m_iSize(iSize) {}

    bool atEnd() const { return m_iPos >= m_iSize; }

    template <typename T>
    T take()
    {
        static_assert(std::is_trivially_copyable_v<T>);
        T value{};
        const size_t n = qMin(sizeof(T), m_iSize - m_iPos);
        if (n)
            std::memcpy(&value, m_pData + m_iPos, n);
        m_iPos += n;
        return value;
    }

    // A length byte, then that many bytes.
    QByteArray takeBytes()
    {
        const size_t n = qMin<size_t>(take<uint8_t>(), m_iSize - m_iPos);
        QByteArray bytes(reinterpret_cast<const char*>(m_pData + m_iPos), qsizetype(n));
        m_iPos += n;
        return bytes;
    }

    // Raw UTF-16 code units: lone surrogates and every control character included.
    QString takeString()
    {
        const QByteArray bytes = takeBytes();
        return QString(reinterpret_cast<const QChar*>(bytes.constData()), bytes.size() / 2);
    }

    QByteArray rest()
    {
        QByteArray bytes(reinterpret_cast<const char*>(m_pData + m_iPos),
                         qsizetype(m_iSize - qMin(m_iPos, m_iSize)));
        m_iPos = m_iSize;
        return bytes;
    }

private:
    const uint8_t* m_pData;
    size_t m_iSize;
    size_t m_iPos = 0;
};

// Qt's log lines would drown the fuzzer's output and slow it down; fatal ones still abort.
inline void silenceQtLog()
{
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& msg) {
        if (type == QtFatalMsg) {
            fprintf(stderr, "%s\n", qPrintable(msg));
            abort();
        }
    });
}

// Runs a check that must hold; a broken one ends the run as a finding.
#define FUZZ_CHECK(condition)                                                              \
    do {                                                                                   \
        if (!(condition)) {                                                                \
            fprintf(stderr, "check failed: %s (%s:%d)\n", #condition, __FILE__, __LINE__); \
            abort();                                                                       \
        }                                                                                  \
    } while (0)

}  // namespace Dravo::Fuzz
