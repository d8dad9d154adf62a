// Answers the modal dialogs a window test opens from a queue of steps, so a
// test drives nested dialogs without an event loop. Each step acts on the
// dialog and returns its result; an empty queue rejects.
#ifndef QUILLORA_TESTS_DIALOG_SCRIPT_H_
#define QUILLORA_TESTS_DIALOG_SCRIPT_H_

#include <QDialog>
#include <deque>
#include <functional>

namespace quillora::testing {

using DialogStep = std::function<int(QDialog&)>;

inline std::function<int(QDialog&)> RunFrom(std::deque<DialogStep>* script) {
  return [script](QDialog& dialog) {
    if (script->empty()) return int(QDialog::Rejected);
    DialogStep step = std::move(script->front());
    script->pop_front();
    return step(dialog);
  };
}

}  // namespace quillora::testing

#endif  // QUILLORA_TESTS_DIALOG_SCRIPT_H_
