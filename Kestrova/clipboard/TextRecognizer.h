#pragma once

#include <memory>

namespace kestrova {

class ClipboardItem;

/// Finds the words in a picture and stores them with the item. Main thread only; the work is done elsewhere.
class TextRecognizer {
public:
    virtual ~TextRecognizer() = default;
    virtual void recognize(const std::shared_ptr<ClipboardItem>& item) = 0;
};

/// Stands where pictures are found by nothing but their place in the history.
class NoTextRecognition final : public TextRecognizer {
public:
    void recognize(const std::shared_ptr<ClipboardItem>&) override {}
};

} // namespace kestrova
