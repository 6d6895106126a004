#pragma once

#include <ISuiteObserver.h>

#include <QTreeWidget>

/// The results of a run, case by case, in the groups of the suite. It follows
/// the newest result as long as the operator has not scrolled away from it.
class CResultsTree : public QTreeWidget
{
public:
    enum EColumn { NameColumn, VerdictColumn, SizeColumn, DetailColumn };

    CResultsTree();

    void Add(CCase const& finished, CCaseOutcome const& outcome);
    void RemoveAll();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QTreeWidgetItem* GroupItem(ECaseGroup group);
    bool ShowsNewest() const;

    QTreeWidgetItem* m_Groups[2] = {};
};
