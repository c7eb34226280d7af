<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja">
<context>
    <name></name>
    <message id="WelcomeWhat">
        <source></source>
        <translation>家計ソフトに登録された予定のうち、期限を過ぎたもの、今日のもの、今後数日のものを表示します。</translation>
    </message>
    <message id="WelcomeFolder">
        <source></source>
        <translation>ソフトが次のフォルダーに一覧を保存すると、ここに表示されます:</translation>
    </message>
    <message id="WelcomeDocumentation">
        <source></source>
        <translation>ソフトの接続方法は Korvel Today のドキュメントに記載されています。</translation>
    </message>
    <message id="WelcomeFound">
        <source></source>
        <translation>ファイルを選ぶと、その予定を表示します:</translation>
    </message>
    <message id="WelcomeOnlyRead">
        <source></source>
        <translation>ファイルは読み取るだけで、変更することはありません。</translation>
    </message>
    <message id="WelcomeReading">
        <source></source>
        <translation>ファイルを読み込んでいます…</translation>
    </message>
    <message id="WelcomeShowFile">
        <source></source>
        <translation>%1 を表示、%2</translation>
    </message>
    <message id="TodayViewEmtyText">
        <source></source>
        <translation>予定はありません</translation>
    </message>
    <message id="ShowAllTitle">
        <source></source>
        <translation>すべて表示…</translation>
    </message>
    <message id="ResheduleTomorrow">
        <source></source>
        <translation>明日</translation>
    </message>
    <message id="Reshedule3Days">
        <source></source>
        <translation>3日後</translation>
    </message>
    <message id="ResheduleNextWeek">
        <source></source>
        <translation>来週</translation>
    </message>
    <message id="DeleteFutureEnteres">
        <source></source>
        <translation>この予定と今後すべて</translation>
    </message>
    <message id="DeleteCurrentPlanButtonTitle">
        <source></source>
        <translation>この予定のみ</translation>
    </message>
    <message id="CancelButtonTitle">
        <source></source>
        <translation>キャンセル</translation>
    </message>
    <message id="FailureTitle">
        <source></source>
        <translation>リストを読み込めませんでした</translation>
    </message>
    <message id="FailureText">
        <source></source>
        <translation>データはそのままです。Korvel Today は自動的に、また共有フォルダーに変更があったときに、もう一度試します。</translation>
    </message>
    <message id="FailureTryAgain">
        <source></source>
        <translation>もう一度試す</translation>
    </message>
    <message id="FailureExplain">
        <source></source>
        <translation>何が問題か</translation>
    </message>
    <message id="PaidButtonHelp">
        <source></source>
        <translation>支払い済みにする</translation>
    </message>
    <message id="LaterButtonHelp">
        <source></source>
        <translation>延期</translation>
    </message>
    <message id="InfoButtonHelp">
        <source></source>
        <translation>開く</translation>
    </message>
    <message id="DeleteButtonHelp">
        <source></source>
        <translation>削除</translation>
    </message>
    <message id="AddButtonHelp">
        <source></source>
        <translation>取引を追加</translation>
    </message>
    <message id="OverdueDescription">
        <source></source>
        <translation>期限超過</translation>
    </message>
    <message id="OpenRowDescription">
        <source></source>
        <translation>操作を表示中</translation>
    </message>
    <message id="OverdueCountText">
        <source></source>
        <translation>期限超過 %L1件</translation>
    </message>
    <message id="DueTodayCountText">
        <source></source>
        <translation>本日期限 %L1件</translation>
    </message>
    <message id="BothCountsText">
        <source></source>
        <translation>%1、%2</translation>
    </message>
    <message id="NothingIsDueText">
        <source></source>
        <translation>期限の来た取引はありません</translation>
    </message>
    <message id="TrayShowTitle">
        <source></source>
        <translation>表示</translation>
    </message>
    <message id="TrayAddTitle">
        <source></source>
        <translation>取引を追加</translation>
    </message>
    <message id="TrayOpenApplicationTitle">
        <source></source>
        <translation>家計簿アプリを開く</translation>
    </message>
    <message id="TrayShowFolderTitle">
        <source></source>
        <translation>共有フォルダーを表示</translation>
    </message>
    <message id="TrayQuitTitle">
        <source></source>
        <translation>終了</translation>
    </message>
    <message id="NotificationOpenTitle">
        <source></source>
        <translation>開く</translation>
    </message>
    <message id="NotificationNotTodayTitle">
        <source></source>
        <translation>今日はしない</translation>
    </message>
</context>
</TS>
