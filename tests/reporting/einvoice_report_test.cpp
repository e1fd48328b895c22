// What was submitted to the tax authority: the listing's rows and sums.
#include <gtest/gtest.h>

#include "reporting/report_criteria.h"
#include "tests/reporting/report_office.h"

namespace kaunter {
namespace {

struct SubmittingOffice : ReportOffice {
  SubmittingOffice() {
    Rows("EInvMast (eInvID,SeqNo,TrxDate,CustID,CompCode,InvAmt,uuid,LHDNStatus,Canceluuid)",
         {"'P1',1,'2024-01-04','C1','HQ',120.10,'U1','Valid',NULL",
          "'P2',1,'2024-01-05','C1','HQ',30,'U2','Valid','X2'",
          "'P3',1,'2024-01-06','','HQ',7,'U3',NULL,''",
          // A credit note of a customer who is gone, in another company.
          "'N1',1,'2024-02-01','C99','KL',-20,'U4','Invalid',''"});
  }
};

TEST(EInvoiceReport, WhatStandsIsWhatWasNotCancelled) {
  const std::string january = FormulaOf(CriteriaOf("EInvoicing.rpt").DateField, "01-01-2024",
                                        "31-01-2024", "EInvMast.CompCode=HQ", "EInvoicing.rpt");
  ExpectAll<SubmittingOffice>(
      {Row("EInvoicing.rpt", {{"InvAmt", "137.10"}, {"Standing", "107.10"}}, "4", "", kPlain, "-"),
       Row("EInvoicing.rpt", {{"InvAmt", "157.10"}, {"Standing", "127.10"}}, "3", january, kPlain,
           "-"),
       Row("EInvoicing.rpt", {{"InvAmt", "150.10"}, {"Standing", "120.10"}}, "2",
           january + " and {EInvMast.EInvID} >= 'P1' and {EInvMast.EInvID} <= 'P3' "
                     "and {EInvMast.LHDNStatus} = 'Valid'",
           kPlain, "-")});
}

}  // namespace
}  // namespace kaunter
