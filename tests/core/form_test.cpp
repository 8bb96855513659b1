// A screen's events: in which order they come, what a refusal stops, what a face is told.
#include "core/form.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/fakes.h"

namespace tallwick {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Rows : public RowSource {
 public:
  std::vector<std::string> Headings() const override { return {"Number"}; }
  std::size_t RowCount() override { return 3; }
  std::vector<std::string> Row(std::size_t row) override { return {std::to_string(row)}; }
};

// Writes every event down. Leaving a control whose text is "bad" is refused.
class TestForm : public Form {
 public:
  explicit TestForm(MessageBoxes& boxes) : Form("frmTest", boxes) {
    SetFormCaption("Test");
    Add(ControlKind::kText, "txtA");
    Add(ControlKind::kAmount, "txtB");
    Add(ControlKind::kCombo, "cbo").rows = {"one", "two"};
    Add(ControlKind::kCheck, "chk");
    Add(ControlKind::kOption, "opt", "Up", 1).value = 1;
    Add(ControlKind::kOption, "opt", "Down", 2);
    Add(ControlKind::kGrid, "grd").source = std::make_shared<Rows>();
    Add(ControlKind::kLabel, "lbl", "Label");
    Add(ControlKind::kButton, "cmdOk", "&Ok");
    Add(ControlKind::kMenu, "mnuView");
  }

  std::vector<std::string> Taken() { return std::exchange(events, {}); }

  using Form::Refuse;
  using Form::SetEnabled;
  using Form::SetFocus;
  using Form::SetRows;
  using Form::SetText;
  using Form::SetVisible;

  std::vector<std::string> events;
  std::string focus_on_enter;      // entering any control moves on to this one
  std::string refuse_to = "txtA";  // where a refused leave puts the focus
  bool box_takes_focus = false;    // as a desktop's box does: it leaves the control and comes back to it
  bool may_close = true;

 protected:
  void OnEnter(Control& control) override {
    events.push_back("enter " + control.name);
    if (!focus_on_enter.empty()) SetFocus(std::exchange(focus_on_enter, {}));
  }
  void OnLeave(Control& control) override {
    events.push_back("leave " + control.name);
    if (control.text != "bad") return;
    if (box_takes_focus) {
      Leave();
      Enter(control.name);
    }
    Refuse("Bad.", refuse_to);
  }
  void OnChange(Control& control) override { events.push_back("change " + control.name); }
  void OnChoose(Control& control) override {
    events.push_back("choose " + control.name + " " + std::to_string(control.selected));
  }
  void OnClick(Control& control) override { events.push_back("click " + control.name); }
  void OnMenu(Control& control) override { events.push_back("menu " + control.name); }
  bool OnClose() override {
    events.emplace_back("close");
    return may_close;
  }
};

class RecordingFace : public Form::Face {
 public:
  void ControlChanged(const Control& control) override { told.push_back(control.name + "=" + control.text); }
  void FocusMoved(const Control& control) override { told.push_back("focus " + control.name); }
  void CaptionChanged() override { told.emplace_back("caption"); }
  void Closed() override { told.emplace_back("closed"); }
  std::vector<std::string> Taken() { return std::exchange(told, {}); }

  std::vector<std::string> told;
};

class FormEvents : public ::testing::Test {
 protected:
  FormEvents() { form_.Attach(&face_); }
  // Stands in txtA with a text that may not be left.
  void StandInBadControl() {
    form_.Change("txtA", "bad");
    form_.Taken();
    face_.Taken();
  }
  std::string FocusName() const { return form_.Focus() != nullptr ? form_.Focus()->name : ""; }

  testing::ScriptedBoxes boxes_;
  TestForm form_{boxes_};
  RecordingFace face_;
};

TEST_F(FormEvents, EveryMoveLeavesBeforeItEnters) {
  form_.Enter("txtA");
  form_.Enter("txtA");
  form_.Change("txtB", "5");
  form_.Change("txtB", "5");
  form_.Click("cmdOk");
  form_.Enter("txtA");
  form_.Menu("mnuView");
  form_.Leave();
  EXPECT_THAT(form_.Taken(), ElementsAre("enter txtA", "leave txtA", "enter txtB", "change txtB",
                                         "leave txtB", "enter cmdOk", "click cmdOk", "leave cmdOk",
                                         "enter txtA", "leave txtA", "menu mnuView"));
  EXPECT_THAT(face_.Taken(), ElementsAre("txtB=5"));
}

TEST_F(FormEvents, ARefusedLeaveStopsWhatWasAskedFor) {
  using Event = void (*)(TestForm&);
  const Event events[] = {
      [](TestForm& form) { form.Enter("txtB"); },    [](TestForm& form) { form.Leave(); },
      [](TestForm& form) { form.Click("cmdOk"); },   [](TestForm& form) { form.Menu("mnuView"); },
      [](TestForm& form) { form.SetFocus("txtB"); }, [](TestForm& form) { EXPECT_FALSE(form.Close()); },
  };
  for (const Event event : events) {
    StandInBadControl();
    event(form_);
    EXPECT_THAT(form_.Taken(), ElementsAre("leave txtA", "enter txtA"));
    EXPECT_EQ(FocusName(), "txtA");
    EXPECT_TRUE(form_.Find("txtA")->refused);
    EXPECT_EQ(boxes_.shown.back().title, "Test");
    form_.Change("txtA", "good");
    EXPECT_FALSE(form_.Find("txtA")->refused);
  }

  // A change elsewhere is not taken, and the face learns what the control still holds.
  StandInBadControl();
  form_.Change("txtB", "7");
  EXPECT_THAT(face_.Taken(), ElementsAre("txtA=bad", "focus txtA", "txtB="));
}

TEST_F(FormEvents, ARefusalMayMoveTheFocusElsewhere) {
  StandInBadControl();
  form_.refuse_to = "txtB";
  form_.Enter("cbo");
  EXPECT_THAT(form_.Taken(), ElementsAre("leave txtA", "enter txtB"));
  EXPECT_EQ(FocusName(), "txtB");

  // Where the named control cannot be entered the focus stays.
  form_.Enter("txtA");
  form_.SetEnabled("txtB", false);
  form_.Enter("cbo");
  EXPECT_EQ(FocusName(), "txtA");
}

TEST_F(FormEvents, ABoxThatTakesTheFocusAwayIsNoSecondLeave) {
  StandInBadControl();
  form_.box_takes_focus = true;
  form_.Enter("txtB");
  EXPECT_THAT(form_.Taken(), ElementsAre("leave txtA", "enter txtA"));
  EXPECT_EQ(boxes_.shown.size(), 1U);
}

TEST_F(FormEvents, SetFocusOutsideARefusalLeavesTheCurrentControl) {
  form_.Enter("txtA");
  form_.Taken();
  form_.SetFocus("txtB");
  EXPECT_THAT(form_.Taken(), ElementsAre("leave txtA", "enter txtB"));
  EXPECT_THAT(face_.Taken(), ElementsAre("focus txtB"));

  // A refusal outside OnLeave, as by a posting button, goes straight to the control.
  form_.Refuse("No.", "txtA");
  EXPECT_THAT(form_.Taken(), ElementsAre("enter txtA"));
  EXPECT_THAT(face_.Taken(), ElementsAre("txtA=", "focus txtA"));

  // An OnEnter that moves on: the face goes only where the focus ends.
  form_.focus_on_enter = "cmdOk";
  form_.SetFocus("txtB");
  EXPECT_THAT(face_.Taken(), ElementsAre("focus cmdOk"));
}

TEST_F(FormEvents, WhatCannotBeUsedTakesNoEvents) {
  form_.SetEnabled("cmdOk", false);
  form_.SetEnabled("mnuView", false);
  form_.SetVisible("txtB", false);
  form_.Click("cmdOk");
  form_.Menu("mnuView");
  form_.Enter("txtB");
  form_.Change("txtB", "x");
  form_.SetCheck("lbl", 1);
  form_.Change("lbl", "x");
  form_.Enter("unknown");
  form_.Click("txtA", 7);
  EXPECT_THAT(form_.Taken(), IsEmpty());
  EXPECT_EQ(form_.Find("txtB")->text, "");

  // A control that went dark while it had the focus is left without an event.
  form_.Enter("txtA");
  form_.SetEnabled("txtA", false);
  form_.Enter("cbo");
  EXPECT_THAT(form_.Taken(), ElementsAre("enter txtA", "enter cbo"));
}

TEST_F(FormEvents, ValuesAndRowsStayInTheirRange) {
  form_.SetCheck("chk", 2);
  form_.SetCheck("chk", 3);
  form_.SetCheck("opt", 1, 2);
  form_.SetCheck("opt", 2, 1);
  EXPECT_EQ(ControlValue(*form_.Find("chk")), "Grayed");
  EXPECT_EQ(ControlValue(*form_.Find("opt", 1)), "False");
  EXPECT_EQ(ControlValue(*form_.Find("opt", 2)), "True");
  EXPECT_EQ(ControlValue(*form_.Find("lbl")), "");
  form_.Taken();

  form_.Choose("cbo", 2);
  form_.Choose("cbo", 3);
  form_.Choose("cbo", 0);
  EXPECT_EQ(form_.Find("cbo")->text, "two");
  form_.Change("cbo", "one");
  EXPECT_EQ(form_.Find("cbo")->selected, 1);
  form_.Change("cbo", "other");
  EXPECT_EQ(form_.Find("cbo")->selected, 0);
  form_.Choose("grd", 3);
  form_.Choose("grd", 3);
  form_.Choose("grd", 4);
  EXPECT_THAT(form_.Taken(), ElementsAre("leave opt", "enter cbo", "choose cbo 2", "change cbo", "change cbo",
                                         "leave cbo", "enter grd", "choose grd 3", "choose grd 3"));
  form_.SetRows("cbo", {"only"}, 9);
  EXPECT_EQ(form_.Find("cbo")->selected, 0);
}

TEST_F(FormEvents, SettersTellOnlyWhatChanged) {
  form_.SetText("txtA", "x");
  form_.SetText("txtA", "x");
  form_.SetEnabled("txtA", true);
  form_.SetRows("cbo", {"one", "two"});
  form_.SetRows("cbo", {"one", "two"}, 2);
  EXPECT_THAT(face_.Taken(), ElementsAre("txtA=x", "cbo=two"));
  EXPECT_THAT(form_.Taken(), IsEmpty());
}

TEST_F(FormEvents, AClosedFormIsSilent) {
  form_.Enter("txtA");
  form_.may_close = false;
  EXPECT_FALSE(form_.Close());
  EXPECT_TRUE(form_.IsOpen());
  form_.may_close = true;
  EXPECT_TRUE(form_.Close());
  EXPECT_TRUE(form_.Close());
  form_.Enter("txtB");
  form_.Change("txtB", "x");
  EXPECT_THAT(form_.Taken(), ElementsAre("enter txtA", "leave txtA", "close", "close"));
  EXPECT_THAT(face_.Taken(), ElementsAre("closed"));
}

}  // namespace
}  // namespace tallwick
