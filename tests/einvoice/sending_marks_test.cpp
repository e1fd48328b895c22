// Who may send a document, when two desktops want to.
#include "einvoice/sending_marks.h"

#include <gtest/gtest.h>

#include "tests/core/office.h"

namespace kaunter {
namespace {

using State = SendingMark::State;

const SendingMarks::Line kLine{"PAY'1", "1"};

struct SecondDesktop {
  explicit SecondDesktop(Office& office) {
    session.clock.Set({2024, 1, 31, 14, 6, 0});
    session.CurrentUserID = "BOB";
    session.MainConn =
        OpenSqlite("MainConn", office.folder.File("office.db"), false, session.clock);
  }
  Session session;
};

TEST(SendingMarks, OneOfTwoDesktopsGetsTheDocument) {
  Office office(Office::State::patched);
  SecondDesktop other(office);
  const SendingMarks ours(office.session, "Submit"), theirs(other.session, "Submit");
  const SendingMark unseen;

  auto claimed = ours.Claim(kLine, unseen);
  ASSERT_TRUE(claimed);
  EXPECT_FALSE(theirs.Claim(kLine, unseen));
  const SendingMark seen = theirs.ReadOne(kLine);
  EXPECT_TRUE(seen.Unknown());
  EXPECT_EQ(seen.user + " " + seen.sent_at, "AMY 31-01-2024 14:05:09");
  // Another line, and the cancellation, are documents of their own.
  EXPECT_TRUE(theirs.Claim({"PAY'1", "2"}, unseen));
  EXPECT_TRUE(SendingMarks(other.session, "Cancel").Claim(kLine, unseen));

  // They take it over knowingly; what we learn of it later is not ours to write any more.
  auto taken = theirs.Claim(kLine, seen);
  ASSERT_TRUE(taken);
  EXPECT_FALSE(ours.Claim(kLine, seen));
  ours.Settle(kLine, *claimed, State::refused, "", "no");
  EXPECT_EQ(theirs.ReadOne(kLine).stamp, taken->stamp);
  EXPECT_TRUE(theirs.ReadOne(kLine).Unknown());
  theirs.Settle(kLine, *taken, State::recorded, "U1", std::string(600, 'x'));
  const auto read = ours.Read({kLine, {"PAY'1", "2"}, {"NONE", "1"}});
  ASSERT_EQ(read.size(), 2u);
  EXPECT_EQ(read.at(kLine).state, State::recorded);
  EXPECT_EQ(read.at(kLine).reply.size(), 500u);
  // Who had listed the document before it was sent at all does not get it now.
  EXPECT_FALSE(ours.Claim(kLine, unseen));
}

TEST(SendingMarks, AWordOfAnotherVersionIsNotTakenForUnsent) {
  Office office(Office::State::patched);
  const SendingMarks marks(office.session, "Submit");
  EXPECT_EQ(marks.ReadOne(kLine).state, State::none);
  marks.Claim(kLine, {});
  office.Run("UPDATE EInvSending SET State='queued'");
  EXPECT_TRUE(marks.ReadOne(kLine).Unknown());
}

// One whose sender died stays unknown when nothing of a second try leaves, and nobody is at it.
TEST(SendingMarks, ATryThatComesToNothingIsNotUnderWay) {
  Office office(Office::State::patched);
  const SendingMarks marks(office.session, "Submit");
  const auto died = marks.Claim(kLine, {});
  auto mark = marks.Claim(kLine, *died);
  EXPECT_TRUE(mark->UnderWay(office.session.clock.Now()));
  EXPECT_FALSE(mark->UnderWay(office.session.clock.Now().AddDays(-400)));  // set back since
  marks.SettleWithout(kLine, *mark, *died, SendingMark::Answer::unsent, "no line");
  EXPECT_TRUE(marks.ReadOne(kLine).Unknown());
  EXPECT_FALSE(marks.ReadOne(kLine).UnderWay(office.session.clock.Now()));
}

}  // namespace
}  // namespace kaunter
