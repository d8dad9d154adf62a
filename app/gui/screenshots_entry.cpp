// Pictures of the entry editor's four pages and the "Entry Timers" dialog.
#include <QApplication>
#include <QWidget>

#include "app/gui/entry_editor_dialog.h"
#include "app/gui/screenshots_shot.h"
#include "app/gui/timers_dialog.h"
#include "store/data_context.h"
#include "store/note_text.h"
#include "store/rates.h"

namespace quillora {
namespace {

class SilentPrompt : public UserPrompt {
 public:
  void ShowMessage(const std::u16string&, const std::u16string&, MessageIcon) override {}
  Answer Ask(const std::u16string&, const std::u16string&, MessageIcon, QuestionButtons,
             Answer a) override {
    return a;
  }
  std::optional<std::string> ChooseFileToOpen(const FileChooser&) override { return {}; }
  std::optional<std::string> ChooseFileToSave(const FileChooser&) override { return {}; }
  void BeginProgress(const std::u16string&, int) override {}
  void StepProgress(int, const std::u16string&) override {}
  void EndProgress() override {}
};

std::vector<NoteStroke> Signature() {
  NoteStroke s;
  for (int x = 0; x <= 120; x += 4) {
    s.push_back(
        {static_cast<std::int16_t>(20 + x),
         static_cast<std::int16_t>(80 + ((x / 4) % 2 ? 10 : -10) * (x % 16 ? 1 : 0))});
  }
  return {s, {{30, 110}, {140, 110}}};
}

}  // namespace

void ShootEntryDialogs(DataContext& data, EntryStore& store, const Clock& clock,
                       const QString& out) {
  SilentPrompt prompt;
  data.settings.custom_labels = {u"PO Number", u"Location", u"Reference"};
  TimeEntry entry;
  store.SeekValue(SeekType::kValueGreaterOrEqual,
                  PropValue::Number(entry_prop::kStart, 0));
  ReadEntry(store, &entry);
  entry.custom1 = u"PO-1187";
  entry.custom2 = u"On site";
  const auto note = NoteBlobFromParts(
      u"Walked through the new wireframes.\nSend the "
      u"revised home page by Friday.",
      Signature());
  SetNote(&entry, static_cast<std::int32_t>(note.size()), note.data());
  AddRate(data.catalogue->rates, 0, 95.0, 0, u"Standard", false);
  AddRate(data.catalogue->rates, 3, 400.0, 0, u"Site visit", false);
  AddRate(data.catalogue->rates, 1, 140.0, 0, u"Evenings", false);
  const EditorServices services{*data.catalogue, data.settings, *data.locale, prompt,
                                clock};
  const char* names[] = {"general", "billing", "custom-fields", "notes"};
  for (const bool handheld : {true, false}) {
    EntryEditorDialog dialog(services, entry, store);
    for (int page = 0; page < 4; ++page) {
      dialog.pages()->setCurrentIndex(page);
      if (page == 1) dialog.calculate_button()->click();
      const QString path = out + "/entry-editor-" + names[page];
      if (handheld) {
        ShootHandheld(&dialog, path + "-handheld.png");
      } else {
        ShootDesktop(&dialog, QSize(460, 420), path + ".png");
      }
    }
    dialog.reject();
  }
  TimerHub hub(clock, nullptr);
  hub.StopTicking();
  TimerSet& timers = hub.timers();
  timers.Record(1);
  timers.Tick();
  timers.Record(0);
  timers.Pause(0);
  TimersDialogWidget dialog(hub, *data.locale, prompt, nullptr, 1);
  dialog.note_edit()->SetText("Calling the printer about the brochure proofs.");
  for (int i = 0; i < 4712; ++i) timers.Tick();  // each tick counts at least a second
  ShootBoth(&dialog, out, "entry-timers", QSize(400, 360));
}

}  // namespace quillora
