// Message boxes answered and recorded, for the length of a test.
#pragma once

#include "document/dialogs.h"

#include <QStringList>

namespace ostrivex::test {

class RecordMessages {
  public:
    RecordMessages() : saved_(DocumentDialogs::Inform) {
        DocumentDialogs::Inform = [this](QWidget*, const QString& text, const QString& title) {
            texts << text;
            titles << title;
        };
    }
    ~RecordMessages() { DocumentDialogs::Inform = saved_; }
    RecordMessages(const RecordMessages&) = delete;
    RecordMessages& operator=(const RecordMessages&) = delete;

    QStringList texts, titles;

  private:
    decltype(DocumentDialogs::Inform) saved_;
};

} // namespace ostrivex::test
