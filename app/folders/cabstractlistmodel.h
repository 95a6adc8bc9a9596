// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QAbstractListModel>
#include <QList>
#include <QVariant>

namespace Dravo {

// The signals of every list model that fills itself asynchronously. A template cannot
// declare signals, so they live in this base.
class CAbstractListModelPrivate : public QAbstractListModel
{
    Q_OBJECT
public:
    explicit CAbstractListModelPrivate(QObject* parent = nullptr) : QAbstractListModel(parent) {}

Q_SIGNALS:
    void fetchingStarted();
    void fetchingComplete();
};

// A flat list of items of type T. The user role answers with the item itself; the
// display role, when enabled, with what itemToText() makes of it.
template <class T>
class CAbstractListModel : public CAbstractListModelPrivate
{
public:
    // pDisplayRoleOwner non-null: the display role is answered.
    explicit CAbstractListModel(QObject* pDisplayRoleOwner, QObject* parent = nullptr)
        : CAbstractListModelPrivate(parent), m_bDisplayRole(pDisplayRoleOwner != nullptr)
    {
    }

    int rowCount(const QModelIndex& parent = QModelIndex()) const override
    {
        return parent.isValid() ? 0 : int(m_items.size());
    }

    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override
    {
        if (!index.isValid() || index.row() < 0 || index.row() >= m_items.size())
            return QVariant();
        const T& item = m_items.at(index.row());
        if (role == Qt::DisplayRole)
            return m_bDisplayRole ? QVariant(itemToText(item)) : QVariant(QString());
        if (role == Qt::UserRole)
            return QVariant::fromValue(item);
        return QVariant();
    }

    int itemCount() const { return int(m_items.size()); }
    const T& itemAt(int iRow) const { return m_items.at(iRow); }
    const QList<T>& items() const { return m_items; }

protected:
    virtual QString itemToText(const T& item) const = 0;

    // Empties the list, announcing the removal to the views.
    void removeAllItems()
    {
        if (m_items.isEmpty())
            return;
        beginRemoveRows(QModelIndex(), 0, int(m_items.size()) - 1);
        m_items.clear();
        endRemoveRows();
    }

    // Appends behind the items already held, announcing the insertion to the views.
    void appendItems(const QList<T>& items)
    {
        if (items.isEmpty())
            return;
        const int iFirst = int(m_items.size());
        beginInsertRows(QModelIndex(), iFirst, iFirst + int(items.size()) - 1);
        m_items.append(items);
        endInsertRows();
    }

private:
    bool m_bDisplayRole;
    QList<T> m_items;
};

}  // namespace Dravo
