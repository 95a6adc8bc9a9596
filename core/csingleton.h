// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>

namespace Dravo {

// Base of the process-wide service objects. Each instance learns of the end of the
// event loop through onAppQuit(), before static destruction begins.
class CSingletonPrivate : public QObject
{
    Q_OBJECT
public:
    CSingletonPrivate();
    ~CSingletonPrivate() override;

Q_SIGNALS:
    void beforeDestroy();

public Q_SLOTS:
    virtual void onAppQuit();
};

// One instance of T per process, created on first use (thread-safe) and destroyed
// at process exit. T derives from CSingleton<T> and befriends it when its
// constructor is private.
template <class T>
class CSingleton : public CSingletonPrivate
{
public:
    static T* instance()
    {
        static T s_instance;
        return &s_instance;
    }

protected:
    CSingleton() = default;
};

}  // namespace Dravo
