#pragma once

#include <QLabel>

/// One line of text that is cut in its middle where there is no room for it, as
/// paths best are; the tool tip then has the whole.
class CElidedLabel : public QLabel
{
public:
    explicit CElidedLabel(QWidget* parent = nullptr);

    void SetText(QString const& text);
    QString const& WholeText() const { return m_Text; }

    QSize minimumSizeHint() const override;
    QSize sizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void Elide();

    QString m_Text;
};
