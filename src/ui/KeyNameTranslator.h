// Names the keys in shortcut texts as Linux desktops do: Qt calls the logo key "Meta", the
// desktops and Tilmora's own modifier titles call it "Super".
#pragma once

#include <QTranslator>

namespace tilmora {

class KeyNameTranslator : public QTranslator {
public:
    using QTranslator::QTranslator;

    bool isEmpty() const override { return false; }
    QString translate(const char* context, const char* sourceText, const char* disambiguation,
                      int n) const override;
};

} // namespace tilmora
