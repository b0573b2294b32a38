// SPDX-License-Identifier: MIT
// The real dialog with all its panels: what a document and the settings file carry from one run to the next.
#include <map>
#include <random>

#include "controls/families.h"
#include "controls/read_controls.h"
#include "main_dialog_fixture.h"
#include "shell/documents.h"

namespace glyphmotion {
namespace {

class Remembering : public MainDialogTest {
 protected:
  ~Remembering() override { ResetVariables(); }
};

void SendLine(Dialog& dialog, int id, const std::string& value) {
  const auto* family = static_cast<const ControlFamily*>(FamilyOf(dialog, id));
  const std::string line = family->stem + std::to_string(id) + "=" + value;
  EXPECT_EQ(SendToControl(dialog, id, {kMessageLoadControl, 0, PointerArgument(&line)}), 1) << line;
}

/// A solid material of another colour: the record's bytes 20 to 22.
void RandomMaterial(Dialog& dialog, int id, std::mt19937& random) {
  std::string line;
  SendToControl(dialog, id, {kMessageSaveControl, 0, PointerArgument(&line)});
  std::string value = line.substr(line.find('=') + 1, 2 * 1282);
  ASSERT_EQ(value.size(), 2u * 1282);
  for (std::size_t digit = 40; digit < 46; ++digit) value[digit] = "0123456789ABCDEF"[random() % 16];
  SendLine(dialog, id, value);
}

void RandomiseControl(Dialog& dialog, int id, std::mt19937& random) {
  if (id <= 0 || id == 53 || !FamilyOf(dialog, id)) return;
  switch (KindOf(dialog, id)) {
    case ControlKind::Check:
      return SetCheck(dialog, id, static_cast<int>(random() % 2));
    case ControlKind::NumberEdit: {
      const ControlRange range = RangeOf(dialog, id + kUpDownOffset);
      const auto span = static_cast<std::uint32_t>(range.maximum - range.minimum) + 1;
      return SetNumber(dialog, id, range.minimum + static_cast<int>(random() % span));
    }
    case ControlKind::Edit:
      return SetText(dialog, id, "caf\xC3\xA9 =" + std::to_string(random()));
    case ControlKind::Combo:
    case ControlKind::SortedCombo:
    case ControlKind::List:
      return SetSelection(dialog, id, static_cast<int>(random() % static_cast<unsigned>(ItemCount(dialog, id))));
    case ControlKind::ColourButton:
      return SetNumber(dialog, id, random() % 0x1000000);
    case ControlKind::ShadowDirection:
      return SendLine(dialog, id, std::to_string(random() % 8));
    case ControlKind::ScrollFour:
      return SendLine(dialog, id, std::to_string(random() % 4));
    case ControlKind::ScrollTwo:
    case ControlKind::ScrollAxis:
      return SendLine(dialog, id, std::to_string(random() % 2));
    case ControlKind::MaterialButton:
      return RandomMaterial(dialog, id, random);
    default:
      return;
  }
}

/// The lines of a document by stem and id, without the font and without a material's block handles at its end.
std::map<std::string, std::string> Lines(const std::string& path) {
  std::map<std::string, std::string> lines;
  const std::string text = ReadWholeFile(path).value_or("");
  for (std::size_t at = 0; at < text.size(); at = text.find('\n', at) + 1) {
    const std::string line = text.substr(at, text.find('\n', at) - at);
    const std::size_t equals = line.find('=');
    if (line.starts_with(';') || line.starts_with("FNTBOX") || equals == std::string::npos) continue;
    lines[line.substr(0, equals)] = line.substr(equals + 1, line.starts_with("MATLBT") ? 2 * 1186 : line.npos);
  }
  return lines;
}

TEST_F(Remembering, EveryControlComesBackFromADocumentAndFromTheSettings) {
  for (unsigned seed = 1; seed <= 5; ++seed) {
    std::mt19937 random(seed);
    RunDialog(kBothHost, [&](Dialog& dialog) {
      for (int id : Children(dialog)) RandomiseControl(dialog, id, random);
      ASSERT_EQ(SaveDocument(dialog, Path("written.gm4")), 1);
    });
    std::filesystem::remove(Path("settings.ini"));
    RunDialog(kBothHost, [&](Dialog& dialog) {
      SaveDocument(dialog, Path("fresh.gm4"));
      LoadDocument(dialog, Path("written.gm4"));
      ASSERT_EQ(SaveDocument(dialog, Path("read.gm4")), 1);
    });
    const auto written = Lines(Path("written.gm4"));
    EXPECT_GT(written.size(), 370u);
    EXPECT_NE(Lines(Path("fresh.gm4")), written);
    EXPECT_EQ(Lines(Path("read.gm4")), written) << "seed " << seed;

    RunDialog(kBothHost, [&](Dialog& dialog) { SaveDocument(dialog, Path("next.gm4")); });
    EXPECT_EQ(Lines(Path("next.gm4")).at("SPNBTN511"), written.at("SPNBTN511")) << "within one process";
    ResetVariables();
    RunDialog(kBothHost, [&](Dialog& dialog) { SaveDocument(dialog, Path("later.gm4")); });
    EXPECT_EQ(Lines(Path("later.gm4")).at("SPNBTN511"), "20");
    const auto later = Lines(Path("later.gm4"));
    for (const auto& [control, value] : written) {
      // Materials have files of their own, Custom palette lives for one run, a palette format allows no alpha, and the
      // softness of White Noise has never had a key.
      const bool hasKey = control != "CHKBOX14" && control != "CHKBOX62" && control != "SPNBTN511";
      if (!hasKey || control.starts_with("MATLBT")) continue;
      EXPECT_EQ(later.at(control), value) << "seed " << seed << ": " << control;
    }
  }
}

TEST_F(Remembering, ATextOf260CharactersComesBackWhole) {
  for (const std::string character : {"x", "\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9F\x98\x80"}) {
    std::string text;
    for (int i = 0; i < 260; ++i) text += character;
    RunDialog(kBothHost, [&](Dialog& dialog) {
      EXPECT_TRUE(Type(dialog, 52, text + character));
      EXPECT_EQ(GetText(dialog, 52), text);
      SaveDocument(dialog, Path("text.gm4"));
    });
    ResetVariables();
    RunDialog(kBothHost, [&](Dialog& dialog) {
      EXPECT_EQ(GetText(dialog, 52), text) << "from the settings";
      SetText(dialog, 52, "");
      LoadDocument(dialog, Path("text.gm4"));
      EXPECT_EQ(GetText(dialog, 52), text) << "from the document";
      EXPECT_EQ(TextVariable("MainText"), text);
    });
  }
}

}  // namespace
}  // namespace glyphmotion
