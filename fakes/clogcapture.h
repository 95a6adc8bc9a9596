// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QStringList>
#include <QtGlobal>

namespace Dravo {
namespace Test {

// Collects every qDebug/qWarning/qCritical line while it lives, and restores the
// previous message handler afterwards. Lines are kept exactly as logged; with
// `forward` they also still reach the previous handler (the test log).
class CLogCapture
{
public:
    explicit CLogCapture(bool forward = false);
    ~CLogCapture();
    CLogCapture(const CLogCapture&) = delete;
    CLogCapture& operator=(const CLogCapture&) = delete;

    QStringList lines() const;
    bool contains(const QString& line) const;
    bool containsPrefix(const QString& prefix) const;
    int count(const QString& line) const;
    void clear();

private:
    QtMessageHandler m_pPrevious;
};

}  // namespace Test
}  // namespace Dravo
