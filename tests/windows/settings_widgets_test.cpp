#include <QPushButton>
#include <QWheelEvent>
#include <gtest/gtest.h>

#include "tests/windows/windows_fixture.h"
#include "ui/settings_window/flow_layout.h"
#include "ui/settings_window/number_field.h"
#include "ui/settings_window/stepper.h"

namespace tarnwick {
namespace {

TEST(ParseInteger, TakesWholeIntegersOnly) {
  const std::vector<std::pair<const char*, std::optional<std::int64_t>>> cases = {
      {"3000", 3000},
      {" 70000 ", 70000},
      {"-1", -1},
      {"+8", 8},
      {"007", 7},
      {"9223372036854775807", 9223372036854775807},
      {"9223372036854775808", std::nullopt},
      {"", std::nullopt},
      {"+", std::nullopt},
      {"+-1", std::nullopt},
      {"30a", std::nullopt},
      {"3,000", std::nullopt},
      {"3.5", std::nullopt},
      {"0x10", std::nullopt},
  };
  for (const auto& [text, number] : cases) EXPECT_EQ(parseInteger(text), number) << text;
}

TEST(NumberField, TellsOfEachIntegerAndForgetsOtherText) {
  NumberField field;
  field.show(3000);
  std::vector<qint64> typed;
  QObject::connect(&field, &NumberField::typed, &field,
                   [&](qint64 number) { typed.push_back(number); });
  field.selectAll();
  QTest::keyClicks(&field, "70x");
  EXPECT_EQ(typed, (std::vector<qint64>{7, 70}));
  EXPECT_EQ(field.text(), "70x") << "what is being typed is left alone";
  QTest::keyClick(&field, Qt::Key_Return);
  EXPECT_EQ(field.text(), "70") << "leaving brings back the last integer";
  field.show(1234567);
  EXPECT_EQ(field.text(), "1234567") << "no grouping";
}

struct StepperCase {
  int start;
  int steps;
  int end;
};

class StepperTest : public testing::TestWithParam<StepperCase> {};

TEST_P(StepperTest, StaysWithinItsRange) {
  Stepper disk({"Disk", " GB", 10, 200, 5});
  QObject::connect(&disk, &Stepper::stepped, &disk, [&](int number) { disk.show(number); });
  disk.show(GetParam().start);
  EXPECT_EQ(disk.text(), QString("Disk: %1 GB").arg(GetParam().start));
  const auto key = GetParam().steps > 0 ? Qt::Key_Up : Qt::Key_Down;
  for (int i = 0; i < std::abs(GetParam().steps); ++i) QTest::keyClick(&disk, key);
  EXPECT_EQ(disk.value(), GetParam().end);
}

INSTANTIATE_TEST_SUITE_P(Steps, StepperTest,
                         testing::Values(StepperCase{20, 1, 25}, StepperCase{20, 2, 30},
                                         StepperCase{20, -2, 10}, StepperCase{20, -9, 10},
                                         StepperCase{195, 9, 200}, StepperCase{198, 1, 200},
                                         // Stored by hand, beyond what the stepper offers.
                                         StepperCase{500, 1, 500}, StepperCase{500, -1, 200},
                                         StepperCase{3, -1, 3}, StepperCase{3, 1, 10}));

TEST(Stepper, TheWheelOverItChangesNothing) {
  Stepper cpu({"CPUs", "", 1, 16, 1});
  cpu.show(4);
  int steps = 0;
  QObject::connect(&cpu, &Stepper::stepped, &cpu, [&] { ++steps; });
  QWheelEvent wheel(QPointF(5, 5), QPointF(5, 5), QPoint(), QPoint(0, 120), Qt::NoButton,
                    Qt::NoModifier, Qt::NoScrollPhase, false);
  QApplication::sendEvent(&cpu, &wheel);
  EXPECT_EQ(steps, 0);
  EXPECT_EQ(cpu.text(), "CPUs: 4");
}

TEST(FlowLayout, GoesOnInTheNextLineWhenThereIsNoRoom) {
  QWidget row;
  auto* items = new FlowLayout;
  items->setSpacing(10);
  row.setLayout(items);
  std::vector<QWidget*> boxes;
  for (int i = 0; i < 3; ++i) {
    if (i == 1) items->addStretch();
    boxes.push_back(new QWidget);
    boxes.back()->setFixedSize(100, 20 + i);
    items->addWidget(boxes.back());
  }
  row.resize(400, 100);
  row.show();
  EXPECT_EQ(boxes[0]->x(), 0);
  EXPECT_EQ(boxes[2]->x() + 100, 400) << "the stretch takes the room between";
  EXPECT_EQ(items->heightForWidth(400), 22);

  row.resize(250, 100);
  QApplication::processEvents();
  EXPECT_EQ(boxes[2]->pos(), QPoint(0, 31)) << "below the 21 of the first line and the spacing";
  EXPECT_EQ(items->heightForWidth(250), 21 + 10 + 22);
  EXPECT_EQ(items->minimumSize().width(), 100);
}

}  // namespace
}  // namespace tarnwick
