#include "CResultsTree.h"

#include "Text.h"
#include "VerdictLook.h"

#include <SuiteTexts.h>
#include <VerdictFormat.h>

#include <QHeaderView>
#include <QLocale>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>

namespace
{
QString SizeText(std::uintmax_t bytes)
{
    return bytes > 0 ? QLocale::c().formattedDataSize(static_cast<qint64>(bytes), 1) : QString();
}

int RowHeight(QWidget const& view)
{
    return view.fontMetrics().height() * 3 / 2;
}

// Keeps the details apart from the sizes, which end where they begin.
class CDetailDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem* option, QModelIndex const& index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        option->text.prepend("   ");
    }
};

// A message of several lines is one line in its row; the tool tip has it whole.
void SetDetail(QTreeWidgetItem& item, QString const& detail)
{
    item.setText(CResultsTree::DetailColumn, detail.simplified());
    item.setToolTip(CResultsTree::DetailColumn, detail);
}
} // namespace

CResultsTree::CResultsTree()
{
    setAccessibleName(tr("Results"));
    setHeaderLabels({tr("Case"), tr("Verdict"), tr("Size"), tr("   Detail")});
    setItemDelegateForColumn(DetailColumn, new CDetailDelegate(this));
    setAlternatingRowColors(true);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setTextElideMode(Qt::ElideMiddle);
    setFrameShape(QFrame::NoFrame);
    setIndentation(fontMetrics().height());
    int const em = fontMetrics().horizontalAdvance('M');
    header()->resizeSection(NameColumn, em * 30);
    header()->resizeSection(VerdictColumn, em * 9);
    header()->resizeSection(SizeColumn, em * 8);
    headerItem()->setTextAlignment(SizeColumn, Qt::AlignRight | Qt::AlignVCenter);
    header()->setMinimumSectionSize(em * 4);
}

void CResultsTree::Add(CCase const& finished, CCaseOutcome const& outcome)
{
    CFormatInfo const format = VerdictFormat(outcome.m_Verdict);
    bool const follows = ShowsNewest();
    auto* const item = new QTreeWidgetItem(GroupItem(finished.m_Group));
    item->setSizeHint(NameColumn, QSize(0, RowHeight(*this)));
    item->setText(NameColumn, ToQString(finished.m_Name));
    item->setToolTip(NameColumn, ToQString(finished.m_Name));
    item->setText(VerdictColumn, VerdictName(outcome.m_Verdict));
    item->setIcon(VerdictColumn, VerdictDot(outcome.m_Verdict, palette(), fontMetrics().height()));
    item->setForeground(VerdictColumn, VerdictColor(outcome.m_Verdict, palette()));
    QFont font = item->font(VerdictColumn);
    font.setWeight(static_cast<QFont::Weight>(format.m_Weight));
    item->setFont(VerdictColumn, font);
    item->setText(SizeColumn, SizeText(outcome.m_Bytes));
    item->setTextAlignment(SizeColumn, Qt::AlignRight | Qt::AlignVCenter);
    SetDetail(*item, ToQString(outcome.m_Detail));
    if (follows)
        scrollToItem(item);
}

void CResultsTree::RemoveAll()
{
    clear();
    m_Groups[0] = m_Groups[1] = nullptr;
}

void CResultsTree::paintEvent(QPaintEvent* event)
{
    QTreeWidget::paintEvent(event);
    if (topLevelItemCount() > 0)
        return;
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(viewport()->rect().adjusted(20, 20, -20, -20),
                     Qt::AlignCenter | Qt::TextWordWrap,
                     tr("The results will stand here, one line for each case."));
}

QTreeWidgetItem* CResultsTree::GroupItem(ECaseGroup group)
{
    QTreeWidgetItem*& item = m_Groups[static_cast<int>(group)];
    if (item == nullptr) {
        item = new QTreeWidgetItem(this);
        item->setSizeHint(NameColumn, QSize(0, RowHeight(*this)));
        item->setText(NameColumn, GroupName(group));
        QFont font = item->font(NameColumn);
        font.setBold(true);
        item->setFont(NameColumn, font);
        item->setFirstColumnSpanned(true);
        item->setExpanded(true);
    }
    return item;
}

bool CResultsTree::ShowsNewest() const
{
    return verticalScrollBar()->value() == verticalScrollBar()->maximum();
}
