--- one right of the signed-in user, read fresh
SELECT AccessLoan as Rst FROM UserMast WHERE UserID='CLERK1'
;;
--- whether a user may see one menu entry
SELECT * FROM UserAccess WHERE UserID = 'CLERK1' and MenuList = 'NewCustMnu'
;;
--- a new user
INSERT INTO UserMast (UserID,UserName,UserLevel,UserDept,Special,FollowUpFlag,CompCode,AccessLoan,AccessPayment,gcc2,DateCreated,UserNIC,UserDOB,UserOIC,UserGender,UserRace,UserAdd1,UserAdd2,UserAdd3,UserPostCode,UserCity,UserState,UserHP1,UserHP2,TimeStart,TimeEnd,Pic1,AllowDelete,AllowEdit,AllowDisc,AllowCreditLimit) VALUES ('CLERK1','Siti binti Ali','Clerk','0CC175B9C0F1B6A831C399E269772661',0,0,'AB',1,1,'AB
CD','2024-01-31 14:05:09','900214-01-5566','1990-02-14','','FEMALE','MELAYU','','','','','','','','','08:30','18:15','siti.jpg',0,-1,0,0)
;;
--- a changed user
UPDATE UserMast SET UserName='Siti binti Ali',UserLevel='Clerk',UserDept='0CC175B9C0F1B6A831C399E269772661',Special=0,FollowUpFlag=0,CompCode='AB',AccessLoan=1,AccessPayment=1,gcc2='AB
CD',UserDOB='1990-02-14',UserNIC='900214-01-5566',UserOIC='',UserGender='FEMALE',UserRace='MELAYU',UserAdd1='',UserAdd2='',UserAdd3='',UserPostCode='',UserCity='',UserState='',UserHP1='',UserHP2='',TimeStart='08:30',TimeEnd='18:15',Pic1='siti.jpg',AllowDelete=0,AllowEdit=-1,AllowDisc=0,AllowCreditLimit=0 WHERE UserID='CLERK1'
;;
--- a user changes the own password
UPDATE UserMast SET UserDept='92EB5FFEE6AE2FEC3AD71C777531578F' WHERE UserID='CLERK1'
;;
--- a user is deleted
Delete from UserMast where UserID='CLERK1'
;;
