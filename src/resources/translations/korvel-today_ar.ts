<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ar">
<context>
    <name></name>
    <message id="WelcomeWhat">
        <source></source>
        <translation>تعرض هذه اللوحة ما هو مخطط في برنامج مالي: المدفوعات والإيرادات المتأخرة والمستحقة اليوم وفي الأيام القادمة.</translation>
    </message>
    <message id="WelcomeFolder">
        <source></source>
        <translation>تظهر القائمة حالما يحفظها البرنامج في هذا المجلد:</translation>
    </message>
    <message id="WelcomeDocumentation">
        <source></source>
        <translation>توضح وثائق Korvel Today كيف يتصل برنامج بها.</translation>
    </message>
    <message id="WelcomeFound">
        <source></source>
        <translation>اختر ملفًا لعرض ما هو مخطط فيه:</translation>
    </message>
    <message id="WelcomeOnlyRead">
        <source></source>
        <translation>يُقرأ الملف فقط ولا يُغيَّر أبدًا.</translation>
    </message>
    <message id="WelcomeReading">
        <source></source>
        <translation>تجري قراءة الملف…</translation>
    </message>
    <message id="WelcomeShowFile">
        <source></source>
        <translation>عرض %1، %2</translation>
    </message>
    <message id="TodayViewEmtyText">
        <source></source>
        <translation>لا شيء مستحق</translation>
    </message>
    <message id="ShowAllTitle">
        <source></source>
        <translation>عرض الكل…</translation>
    </message>
    <message id="ResheduleTomorrow">
        <source></source>
        <translation>غدًا</translation>
    </message>
    <message id="Reshedule3Days">
        <source></source>
        <translation>بعد 3 أيام</translation>
    </message>
    <message id="ResheduleNextWeek">
        <source></source>
        <translation>الأسبوع القادم</translation>
    </message>
    <message id="DeleteFutureEnteres">
        <source></source>
        <translation>هذا القيد وكل القيود القادمة</translation>
    </message>
    <message id="DeleteCurrentPlanButtonTitle">
        <source></source>
        <translation>هذا القيد فقط</translation>
    </message>
    <message id="CancelButtonTitle">
        <source></source>
        <translation>إلغاء</translation>
    </message>
    <message id="FailureTitle">
        <source></source>
        <translation>تعذّر تحميل القائمة</translation>
    </message>
    <message id="FailureText">
        <source></source>
        <translation>بياناتك لم تُمسّ. يعيد Korvel Today المحاولة من تلقاء نفسه، وكلما تغيّر شيء في المجلد المشترك.</translation>
    </message>
    <message id="FailureTryAgain">
        <source></source>
        <translation>إعادة المحاولة</translation>
    </message>
    <message id="FailureExplain">
        <source></source>
        <translation>ما المشكلة؟</translation>
    </message>
    <message id="PaidButtonHelp">
        <source></source>
        <translation>وضع علامة مدفوع</translation>
    </message>
    <message id="LaterButtonHelp">
        <source></source>
        <translation>تأجيل</translation>
    </message>
    <message id="InfoButtonHelp">
        <source></source>
        <translation>فتح</translation>
    </message>
    <message id="DeleteButtonHelp">
        <source></source>
        <translation>حذف</translation>
    </message>
    <message id="AddButtonHelp">
        <source></source>
        <translation>إضافة معاملة</translation>
    </message>
    <message id="OverdueDescription">
        <source></source>
        <translation>متأخر</translation>
    </message>
    <message id="OpenRowDescription">
        <source></source>
        <translation>الإجراءات معروضة</translation>
    </message>
    <message id="OverdueCountText">
        <source></source>
        <translation>متأخر: %L1</translation>
    </message>
    <message id="DueTodayCountText">
        <source></source>
        <translation>مستحق اليوم: %L1</translation>
    </message>
    <message id="BothCountsText">
        <source></source>
        <translation>%1، %2</translation>
    </message>
    <message id="NothingIsDueText">
        <source></source>
        <translation>لا شيء مستحق</translation>
    </message>
    <message id="TrayShowTitle">
        <source></source>
        <translation>إظهار</translation>
    </message>
    <message id="TrayAddTitle">
        <source></source>
        <translation>إضافة معاملة</translation>
    </message>
    <message id="TrayOpenApplicationTitle">
        <source></source>
        <translation>فتح التطبيق المالي</translation>
    </message>
    <message id="TrayShowFolderTitle">
        <source></source>
        <translation>إظهار المجلد المشترك</translation>
    </message>
    <message id="TrayQuitTitle">
        <source></source>
        <translation>إنهاء</translation>
    </message>
    <message id="NotificationOpenTitle">
        <source></source>
        <translation>فتح</translation>
    </message>
    <message id="NotificationNotTodayTitle">
        <source></source>
        <translation>ليس اليوم</translation>
    </message>
</context>
</TS>
