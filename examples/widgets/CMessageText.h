#pragma once

#include <QTextEdit>

/// Text to be read, selected and copied, as high as it is long, up to a limit
/// from where on it scrolls. Unlike a label it breaks long paths.
class CMessageText : public QTextEdit
{
public:
    explicit CMessageText(QString const& text);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void FitHeight();
};
