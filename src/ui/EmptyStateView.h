// What a list shows when it has nothing to list: a symbol, a title and what to do, centred in a
// panel across the section's width.
#pragma once

#include "ui/NativePanel.h"

class QLabel;

namespace tilmora {

class EmptyStateView : public NativePanel {
    Q_OBJECT
public:
    EmptyStateView(const QString& symbolName, const QString& title, const QString& text,
                   QWidget* parent = nullptr);
    void setContent(const QString& symbolName, const QString& title, const QString& text);

private:
    QLabel* symbol_;
    QLabel* title_;
    QLabel* text_;
};

} // namespace tilmora
